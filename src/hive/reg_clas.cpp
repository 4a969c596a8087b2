#include "hive/reg_clas.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace ovrik {

namespace {

constexpr uint64_t header_search_bytes = 0x10000;
constexpr size_t block_bytes = 0x4000;  // of one load

}  // namespace

reg_hive::reg_hive(source_reader source, const hive_limits& limits, read_faults& faults, bool& ok,
                   const std::vector<hive_log_source>& logs)
    : m_source(std::move(source)), m_faults(faults) {
  ok = false;
  uint64_t size = m_source.size();
  if (size < limits.least || size > limits.most) return;
  if (!logs.empty()) {
    constexpr uint64_t base_and_bin_header = 0x1020;
    std::vector<uint8_t> start;
    m_source.read_vector(start, base_and_bin_header, 0, faults);
    m_replay = replay_hive_logs(byte_view(start), size, logs);
    size = std::clamp(m_replay.size, size, limits.most);
  }
  m_image.reset(new (std::nothrow) uint8_t[static_cast<size_t>(size)]);
  if (m_image == nullptr) return;
  m_filesize = static_cast<uint32_t>(size);
  m_loaded.resize((m_filesize + block_bytes - 1) / block_bytes);
  const byte_view start = bytes_at(0, header_search_bytes);
  const bool search_on = limits.bin_search > header_search_bytes && needs_bin_search(start);
  ok = check(search_on ? bytes_at(0, limits.bin_search) : start);
}

bool reg_hive::check(byte_view searched) {
  m_usable = check_hive_header(searched, m_filesize, m_root_offset, m_name);
  if (!m_usable) m_filesize = 0;
  return m_usable;
}

std::optional<byte_view> reg_hive::cell_at(uint32_t pos) const {
  constexpr uint64_t fixed_fields = 0x100;
  const int64_t place = static_cast<int32_t>(pos);
  if (place > size() || -place > int64_t{size()}) return std::nullopt;
  return bytes_at(pos, fixed_fields);
}

byte_view reg_hive::bytes_at(uint32_t pos, uint64_t length) const {
  if (pos >= size()) return {};
  length = std::min<uint64_t>(length, size() - pos);
  load_blocks(pos, pos + static_cast<size_t>(length));
  return {m_image.get() + pos, static_cast<size_t>(length), pos};
}

void reg_hive::load_blocks(size_t begin, size_t end) const {
  const size_t end_block = (end + block_bytes - 1) / block_bytes;
  for (size_t block = begin / block_bytes; block < end_block; ++block) {
    if (m_loaded[block]) continue;
    size_t behind = block + 1;  // missing blocks that lie side by side come in one read
    while (behind < end_block && !m_loaded[behind]) ++behind;
    const size_t from = block * block_bytes;
    const size_t wanted = std::min<size_t>(behind * block_bytes, size()) - from;
    size_t read = wanted;
    m_source.read(m_image.get() + from, read, from, m_faults);
    std::memset(m_image.get() + from + read, 0, wanted - read);  // logs make a hive longer
    m_replay.apply(from, m_image.get() + from, wanted);
    for (; block < behind; ++block) m_loaded[block] = true;
  }
}

}  // namespace ovrik
