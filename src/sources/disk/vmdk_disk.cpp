#include "sources/disk/vmdk_disk.h"

#include <algorithm>
#include <utility>

#include "sources/disk/container_kind.h"
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
constexpr uint64_t entry_bytes = vmdk_entries::entry_bytes;
constexpr uint32_t no_sector = 0;
constexpr uint32_t zeroed_grain = 1;  // in a grain table only

constexpr uint64_t most_bytes = uint64_t{1} << 63;  // no disk is that large
constexpr uint64_t longest_look_ahead = 64;  // entries of absent grains that are taken as one

/// Turns sectors into bytes. False: they do not fit 63 bits, and no file is that large.
bool to_bytes(uint64_t sectors, uint64_t& bytes) {
  if (sectors > most_bytes / sector_bytes - 1) return false;
  bytes = sectors * sector_bytes;
  return true;
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
  m_compressed = kind_of_container(view) == container_kind::vmdk_compressed;
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
  return m_grain_bytes != 0 && m_entries_per_table != 0 && place_directory(directory, overhead);
}

bool vmdk_disk::place_directory(uint64_t directory_at, uint64_t overhead) {
  if (overhead > m_file_size || directory_at >= overhead) return false;
  // The directory ends where the table that it names first begins.
  uint32_t first_sector = 0;
  uint64_t first_table = 0;
  if (!entry_at(m_directory, first_sector, directory_at) || !to_bytes(first_sector, first_table) ||
      first_table >= overhead || first_table <= directory_at) {
    return false;
  }
  m_directory_at = directory_at;
  m_table_count = (first_table - directory_at) / entry_bytes;
  return true;
}

bool vmdk_disk::entry_at(vmdk_entries& entries, uint32_t& value, uint64_t offset) {
  return entries.entry_at(value, *m_file, offset, m_faults);
}

uint64_t vmdk_disk::bytes_of(uint64_t grains) const {
  return grains > most_bytes / m_grain_bytes ? most_bytes : grains * m_grain_bytes;
}

void vmdk_disk::keep_pieces(size_t count) {
  m_directory.keep_pieces(count / 8);
  m_tables.keep_pieces(count);
}

grain_run vmdk_disk::vmdk_locate(uint64_t offset) {
  if (offset >= m_absent_begin && offset < m_absent_end) {
    return {grain_state::absent, 0, m_absent_end - offset};
  }
  const uint64_t grain = offset / m_grain_bytes;
  const uint64_t table = grain / m_entries_per_table;
  const uint64_t entry = grain % m_entries_per_table;
  const uint64_t in_grain = offset % m_grain_bytes;
  grain_run run = {grain_state::absent, 0, most_bytes};
  if (table < m_table_count) {
    uint32_t sector = no_sector;
    const uint64_t place = m_directory_at + table * entry_bytes;
    if (!entry_at(m_directory, sector, place)) {
      return {grain_state::zeroed, 0, m_grain_bytes - in_grain};
    }
    run = sector == no_sector
              ? grain_run{grain_state::absent, 0, bytes_of(m_entries_per_table - entry) - in_grain}
              : run_in_table(sector * sector_bytes, entry, in_grain);
  }
  if (run.state == grain_state::absent) {
    m_absent_begin = offset;
    m_absent_end = offset + run.size;
  }
  return run;
}

grain_run vmdk_disk::run_in_table(uint64_t table_at, uint64_t entry, uint64_t in_grain) {
  const uint64_t rest = m_grain_bytes - in_grain;
  uint32_t sector = no_sector;
  if (!entry_at(m_tables, sector, table_at + entry * entry_bytes) || sector == zeroed_grain) {
    return {grain_state::zeroed, 0, rest};
  }
  if (sector != no_sector) {
    return {grain_state::stored, sector * sector_bytes + in_grain, rest};
  }
  const uint64_t last = std::min<uint64_t>(entry + longest_look_ahead, m_entries_per_table);
  uint64_t next = entry + 1;
  while (next < last && entry_at(m_tables, sector, table_at + next * entry_bytes) &&
         sector == no_sector) {
    ++next;
  }
  return {grain_state::absent, 0, bytes_of(next - entry) - in_grain};
}

size_t vmdk_disk::read(uint8_t* buffer, size_t size, uint64_t file_offset) const {
  m_file->read(buffer, size, file_offset, m_faults);
  return size;
}

}  // namespace ovrik
