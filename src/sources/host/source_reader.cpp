#include "sources/host/source_reader.h"

#include <algorithm>
#include <cstring>

#include "sources/host/file_source.h"

namespace ovrik {

namespace {

constexpr uint64_t block_bytes = 4096;
constexpr uint64_t sector_bytes = 512;
constexpr size_t most_blocks_by_sectors = 64;  // that failed in a row
constexpr size_t most_blocks_tried = 1024;     // that failed in a row
constexpr uint64_t stride_bytes = 0x40000;     // from one try to the next behind those

/// How many bytes there are from `offset` to the next multiple of `unit`.
size_t bytes_to_boundary(uint64_t offset, uint64_t unit) {
  return static_cast<size_t>(unit - offset % unit);
}

}  // namespace

/// What is asked for, and how far it has come.
struct source_reader::reading {
  uint8_t* buffer;
  uint64_t offset;  ///< of the first byte that has not been dealt with
  size_t left;      ///< how many have not
  read_faults& faults;
  size_t lost = 0;

  void pass(size_t bytes) {
    buffer += bytes;
    offset += bytes;
    left -= bytes;
  }
};

bool source_reader::read(uint8_t* buffer, size_t& size, uint64_t offset, read_faults& faults) {
  size = offset < m_size ? static_cast<size_t>(std::min<uint64_t>(size, m_size - offset)) : 0;
  reading asked = {buffer, offset, size, faults};
  if (asked.left == 0 || read_some(asked, asked.left)) return size != 0;
  size_t step = 1;  // how many blocks come in the next read
  while (asked.left != 0) {
    const uint64_t there = m_source->size();  // less than before if the file became shorter
    if (asked.offset >= there) break;
    const uint64_t reach = bytes_to_boundary(asked.offset, block_bytes) + (step - 1) * block_bytes;
    const auto wanted =
        static_cast<size_t>(std::min<uint64_t>({reach, asked.left, there - asked.offset}));
    if (read_some(asked, wanted)) {
      step *= 2;
    } else {
      if (step == 1) read_block(asked);
      step = 1;
    }
  }
  lose(asked, asked.left);
  return asked.lost != size;
}

/// Reads the next `wanted` bytes. False: not all of them came.
bool source_reader::read_some(reading& asked, size_t wanted) {
  size_t got = wanted;
  m_source->read_at(asked.buffer, got, asked.offset);
  got = std::min(got, wanted);
  asked.pass(got);
  if (got != 0) m_blocks_failed = 0;
  return got == wanted;
}

/// Deals with what is left of a block that did not come in one read.
void source_reader::read_block(reading& asked) {
  const size_t failed = ++m_blocks_failed;
  const uint64_t unit = failed > most_blocks_tried ? stride_bytes : block_bytes;
  size_t rest = std::min(bytes_to_boundary(asked.offset, unit), asked.left);
  if (failed > most_blocks_by_sectors) {
    lose(asked, rest);
    return;
  }
  for (size_t sector = 0; rest != 0; rest -= sector) {
    sector = std::min(bytes_to_boundary(asked.offset, sector_bytes), rest);
    const size_t left_behind = asked.left - sector;
    if (!read_some(asked, sector)) lose(asked, asked.left - left_behind);
  }
}

/// Puts zeros in place of the next bytes, which cannot be read.
void source_reader::lose(reading& asked, size_t bytes) {
  if (bytes == 0) return;
  std::memset(asked.buffer, 0, bytes);
  asked.faults.add(m_name, asked.offset, bytes);
  asked.lost += bytes;
  asked.pass(bytes);
}

bool source_reader::read_vector(std::vector<uint8_t>& bytes, uint64_t size, uint64_t offset,
                                read_faults& faults) {
  auto count = static_cast<size_t>(std::min(size, m_size - std::min(offset, m_size)));
  bytes.resize(count);
  return read(bytes.data(), count, offset, faults);
}

bool read_whole_file(std::vector<uint8_t>& bytes, const std::string& path, size_t max_bytes,
                     read_faults& faults) {
  bytes.clear();
  auto file = open_file_source(path);
  return file != nullptr &&
         source_reader(std::move(file), path).read_vector(bytes, max_bytes, 0, faults);
}

}  // namespace ovrik
