#include "hive/reg_clas.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "hive/hive_header.h"

namespace ovrik {

namespace {

constexpr uint64_t largest_hive_file = 0x2FFFFFFF;
constexpr uint64_t header_search_bytes = 0x10000;
constexpr size_t block_bytes = 0x4000;  // of one load
constexpr size_t sector_bytes = 512;    // the least that is lost

}  // namespace

reg_hive::reg_hive(const std::string& path, bool& ok) {
  ok = false;
  if (!m_file.open_read(path)) return;
  const uint64_t size = m_file.length();
  if (size <= least_hive_bytes || size > largest_hive_file || !make_room(size)) return;
  ok = check(bytes_at(0, header_search_bytes));
}

reg_hive::reg_hive(std::unique_ptr<byte_source> source, bool& ok) : m_source(std::move(source)) {
  constexpr uint64_t largest_hive = 0x7FFFFFFF;  // sizes are signed 32-bit numbers
  ok = false;
  const uint64_t size = m_source->size();
  if (size < least_hive_bytes || size > largest_hive || !make_room(size)) return;
  const byte_view start = bytes_at(0, header_search_bytes);
  ok = check(needs_bin_search(start) ? bytes_at(0, size) : start);
}

bool reg_hive::make_room(uint64_t size) {
  m_image.reset(new (std::nothrow) uint8_t[static_cast<size_t>(size)]);
  if (m_image == nullptr) return false;
  m_filesize = static_cast<uint32_t>(size);
  m_loaded.resize((m_filesize + block_bytes - 1) / block_bytes);
  return true;
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
    uint8_t* const place = m_image.get() + from;
    for (size_t done = 0; done < wanted;) {
      done += read_source(place + done, wanted - done, from + done);
      // What cannot be read is zeros, a sector at least.
      const size_t lost = std::min(sector_bytes - (from + done) % sector_bytes, wanted - done);
      std::memset(place + done, 0, lost);
      done += lost;
    }
    for (; block < behind; ++block) m_loaded[block] = true;
  }
}

/// Reads from wherever the bytes are; returns how many came from the start on.
size_t reg_hive::read_source(uint8_t* buffer, size_t size, uint64_t offset) const {
  if (m_source != nullptr) {
    m_source->read_at(buffer, size, offset);
  } else {
    m_file.read_at(buffer, size, offset);
  }
  return size;
}

}  // namespace ovrik
