#include "sources/disk/vmdk_disk.h"

#include <algorithm>
#include <utility>

#include "sources/host/file_source.h"

namespace ovrik {

namespace {

constexpr uint64_t sector_bytes = 512;

// The header of a sparse extent (VMDK SparseExtentHeader). Its fields stand side by side,
// unaligned.
constexpr size_t header_bytes = 513;  // with the first byte behind it, without which it is no disk
constexpr const char* magic = "KDMV";
constexpr size_t capacity_at = 12;           // u64, sectors
constexpr size_t grain_size_at = 20;         // u64, sectors
constexpr size_t descriptor_offset_at = 28;  // u64, sectors
constexpr size_t descriptor_size_at = 36;    // u64, sectors
constexpr size_t table_entries_at = 44;      // u32, numGTEsPerGT
constexpr size_t directory_offset_at = 56;   // u64, sectors, gdOffset
constexpr size_t overhead_at = 64;           // u64, sectors in front of the first grain

constexpr uint64_t largest_descriptor = 0x40000;  // bytes; they are written with 10 KiB

// Entries of a grain directory (the sector of a grain table) and of a grain table (of a grain).
constexpr uint32_t entry_bytes = 4;
constexpr uint32_t no_sector = 0;
constexpr uint32_t zeroed_grain = 1;            // in a grain table only
constexpr uint32_t table_nowhere = 0xFFFFFFFF;  // stands for a directory entry that is not known

/// Turns sectors into bytes. False: they do not fit 63 bits, and no file is that large.
bool to_bytes(uint64_t sectors, uint64_t& bytes) {
  if (sectors > (uint64_t{1} << 63) / sector_bytes - 1) return false;
  bytes = sectors * sector_bytes;
  return true;
}

/// Puts `mark` in place of the entries that could not be read. They come from `offset` of the file,
/// and `faults` are those of this read.
void mark_lost_entries(std::vector<uint8_t>& entries, uint64_t offset, const read_faults& faults,
                       uint32_t mark) {
  for (const read_fault& fault : faults.all()) {
    const uint64_t begin = (fault.offset - offset) / entry_bytes * entry_bytes;
    const uint64_t end = std::min<uint64_t>(fault.offset - offset + fault.length, entries.size());
    for (uint64_t at = begin; at < end; ++at) {
      entries[static_cast<size_t>(at)] = static_cast<uint8_t>(mark >> 8 * (at % entry_bytes));
    }
  }
}

}  // namespace

bool vmdk_disk::open_disk(const std::string& path) {
  m_path = path;
  auto file = open_file_source(path);
  if (file == nullptr) return false;
  m_file.emplace(std::move(file), path);
  return read_header();
}

/// Reads what must be there as a whole. False: the file has nothing there, or it cannot be read.
bool vmdk_disk::read_whole(std::vector<uint8_t>& bytes, uint64_t size, uint64_t offset) {
  read_faults faults;
  const bool read = m_file->read_vector(bytes, size, offset, faults);
  m_faults.add(faults);
  return read && faults.empty();
}

bool vmdk_disk::read_header() {
  m_file_size = m_file->size();
  std::vector<uint8_t> header;
  if (!read_whole(header, header_bytes, 0) || header.size() < header_bytes) return false;
  const byte_view view(header);
  if (!view.text_at(0, magic)) return false;
  m_entries_per_table = view.u32_at(table_entries_at);
  // All in bytes from here on.
  uint64_t descriptor = 0, descriptor_size = 0, directory = 0, overhead = 0;
  if (!to_bytes(view.u64_at(capacity_at), m_capacity_bytes) ||
      !to_bytes(view.u64_at(grain_size_at), m_grain_bytes) ||
      !to_bytes(view.u64_at(descriptor_offset_at), descriptor) ||
      !to_bytes(view.u64_at(descriptor_size_at), descriptor_size) ||
      !to_bytes(view.u64_at(directory_offset_at), directory) ||
      !to_bytes(view.u64_at(overhead_at), overhead)) {
    return false;
  }
  std::vector<uint8_t> text;
  descriptor_size = std::min(descriptor_size, largest_descriptor);
  if (!read_whole(text, descriptor_size, descriptor)) return false;
  m_descriptor = parse_vmdk_descriptor(byte_view(text));
  return m_grain_bytes != 0 && m_entries_per_table != 0 && read_tables(directory, overhead);
}

bool vmdk_disk::read_tables(uint64_t directory_at, uint64_t overhead) {
  if (overhead > m_file_size || directory_at >= overhead) return false;
  // The directory ends where the table that it names first begins.
  std::vector<uint8_t> bytes;
  uint64_t first_table = 0;
  if (!read_whole(bytes, entry_bytes, directory_at) ||
      !to_bytes(byte_view(bytes).u32_at(0), first_table) || first_table >= overhead ||
      first_table <= directory_at || !read_whole(bytes, first_table - directory_at, directory_at)) {
    return false;
  }
  // Tables may overlap: no more bytes of them are read than the file has.
  uint64_t bytes_left = m_file_size;
  const byte_view directory(bytes);
  for (size_t at = 0; directory.has(at, entry_bytes); at += entry_bytes) {
    grain_table& table = m_grain_directory.emplace_back();
    const uint32_t sector = directory.u32_at(at);
    if (sector == no_sector) {
      table.known = m_entries_per_table;  // no grain of it was ever stored
    } else {
      read_table(table, sector * sector_bytes, bytes_left);
    }
  }
  return true;
}

void vmdk_disk::read_table(grain_table& table, uint64_t offset, uint64_t& bytes_left) {
  constexpr uint64_t piece_bytes = 0x10000;
  uint64_t wanted = std::min(uint64_t{m_entries_per_table} * entry_bytes, bytes_left);
  table.first = static_cast<uint32_t>(m_grains.size());
  uint64_t zeros = 0;  // entries without a sector, in front of the next one that has one
  std::vector<uint8_t> piece;
  read_faults faults;
  while (wanted != 0 && m_file->read_vector(piece, std::min(wanted, piece_bytes), offset, faults)) {
    mark_lost_entries(piece, offset, faults, zeroed_grain);
    m_faults.add(faults);
    faults.clear();
    const byte_view entries(piece);
    for (size_t at = 0; entries.has(at, entry_bytes); at += entry_bytes) {
      const uint32_t sector = entries.u32_at(at);
      ++zeros;
      if (sector == no_sector) continue;
      m_grains.resize(m_grains.size() + static_cast<size_t>(zeros));
      m_grains.back() = sector;
      zeros = 0;
    }
    offset += piece.size();
    wanted -= piece.size();
    bytes_left -= piece.size();
  }
  m_faults.add(faults);
  table.count = static_cast<uint32_t>(m_grains.size() - table.first);
  table.known = table.count + zeros;
}

grain_state vmdk_disk::vmdk_locate(uint64_t offset, uint64_t& file_offset) const {
  const uint64_t grain = offset / m_grain_bytes;
  const uint64_t table = grain / m_entries_per_table;
  if (table >= m_grain_directory.size()) return grain_state::absent;
  const grain_table& entries = m_grain_directory[static_cast<size_t>(table)];
  const uint64_t entry = grain % m_entries_per_table;
  if (entry >= entries.known) return grain_state::zeroed;
  if (entry >= entries.count) return grain_state::absent;
  const uint32_t sector = m_grains[entries.first + static_cast<size_t>(entry)];
  if (sector == no_sector) return grain_state::absent;
  if (sector == zeroed_grain) return grain_state::zeroed;
  file_offset = sector * sector_bytes + offset % m_grain_bytes;
  return grain_state::stored;
}

size_t vmdk_disk::read(uint8_t* buffer, size_t size, uint64_t file_offset) const {
  m_file->read(buffer, size, file_offset, m_faults);
  return size;
}

}  // namespace ovrik
