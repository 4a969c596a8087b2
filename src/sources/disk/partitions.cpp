#include "sources/disk/partitions.h"

#include <algorithm>
#include <array>
#include <set>
#include <vector>

#include "base/byte_view.h"
#include "sources/disk/partition_probe.h"

namespace ovrik {

namespace {

constexpr uint32_t first_read_bytes = 16384;
constexpr uint32_t gpt_read_bytes = 32768;
constexpr uint32_t small_sector = 512;
constexpr uint32_t larger_sectors[] = {1024, 2048, 4096, 8192, 16384};

// Master and extended boot records.
constexpr size_t boot_mark_at = 510;
constexpr uint16_t boot_mark = 0xAA55;
constexpr size_t slots_at = 446;
constexpr size_t slot_bytes = 16;
constexpr uint32_t slot_count = 4;
constexpr uint8_t gpt_type = 238;
constexpr uint64_t usual_first_sector = 63;
constexpr uint64_t guess_limit = 0x100000;

// GPT header and entries.
constexpr size_t gpt_current_lba_at = 24;  // u64
constexpr size_t gpt_entries_lba_at = 72;  // u64
constexpr size_t gpt_entry_count_at = 80;  // u32
constexpr size_t gpt_entry_size_at = 84;   // u32
constexpr size_t gpt_first_lba_at = 32;    // u64 of an entry
constexpr size_t gpt_last_lba_at = 40;     // u64 of an entry
constexpr uint32_t gpt_least_entry = 48;   // what is read of an entry
constexpr uint32_t gpt_largest_entry = 0x10000;
constexpr uint32_t gpt_most_entries = 0x10000;
constexpr size_t guid_bytes = 16;

struct table_slot {
  uint8_t type = 0;
  uint32_t first_sector = 0;
  uint32_t sector_count = 0;

  bool is_extended() const { return type == 0x05 || type == 0x0F; }
  bool is_used() const { return type != 0 && sector_count != 0 && is_known_partition_type(type); }
};

table_slot slot_at(byte_view block, uint32_t index) {
  const uint64_t at = slots_at + uint64_t{slot_bytes} * index;
  return {block.u8_at(at + 4), block.u32_at(at + 8), block.u32_at(at + 12)};
}

bool is_bare_volume(byte_view block) {
  return block.text_at(3, "EXFA") || block.text_at(3, "MSDO") || block.text_at(3, "NTFS");
}

bool has_table(byte_view block) {
  return block.u16_at(boot_mark_at) == boot_mark && !is_bare_volume(block);
}

/// Reads exactly `size` bytes. False: they did not all come.
bool read_exact(RAW_DISK_IO& disk, std::vector<uint8_t>& bytes, uint32_t size, uint64_t offset) {
  bytes.resize(size);
  uint32_t read = size;
  return disk.read(bytes.data(), read, offset) && read == size;
}

/// As much of `size` bytes as the disk has. False: nothing came.
bool read_some(RAW_DISK_IO& disk, std::vector<uint8_t>& bytes, uint32_t size, uint64_t offset) {
  bytes.resize(size);
  const bool read = disk.read(bytes.data(), size, offset);
  bytes.resize(read ? size : 0);
  return !bytes.empty();
}

partition_info partition_of(const table_slot& slot, uint64_t base, uint32_t sector) {
  partition_info partition;
  partition.start_sector = base + slot.first_sector;
  partition.sector_count = slot.sector_count;
  partition.type = slot.type;
  partition.bytes_per_sector = sector;
  return partition;
}

/// Walks the tables of one disk at one sector size.
class table_walk {
 public:
  table_walk(RAW_DISK_IO& disk, partition_list& list, uint32_t sector)
      : m_disk(disk), m_list(list), m_sector(sector) {}

  /// The four slots of the master boot record and what they lead to.
  bool walk(byte_view block) {
    uint64_t chain = 0;
    for (uint32_t i = 0; i < slot_count; ++i) {
      const table_slot slot = slot_at(block, i);
      if (slot.type == gpt_type && chain == 0) return walk_gpt();
      if (slot.is_used()) m_list.push_back(partition_of(slot, 0, m_sector));
      if (slot.is_extended() && chain == 0) chain = slot.first_sector;
    }
    // A chain that cannot be read takes nothing from what the table itself names.
    if (chain != 0) walk_chain(chain);
    for (partition_info& partition : m_list) probe(partition);
    return !m_list.empty();
  }

  /// The chain of extended boot records from sector `start` on. False: the first cannot be read.
  bool walk_chain(uint64_t start) {
    std::vector<uint8_t> block;
    if (!read_some(m_disk, block, small_sector, m_sector * start)) return false;
    uint16_t last_type = 0;
    uint64_t next = take_slots(byte_view(block), start, start, last_type);
    guess_volume_in_front(start, last_type);
    std::set<uint64_t> visited = {start};
    while (next != 0 && visited.insert(next).second) {
      if (!read_some(m_disk, block, small_sector, m_sector * next)) break;
      if (!has_table(byte_view(block))) break;
      next = take_slots(byte_view(block), next, start, last_type);
    }
    return true;
  }

  bool walk_gpt() {
    m_list.clear();
    std::vector<uint8_t> header;
    if (!read_some(m_disk, header, gpt_read_bytes, m_sector)) return false;
    const byte_view view(header);
    if (view.u64_at(gpt_current_lba_at) != 1) return false;
    const uint32_t entry_size = view.u32_at(gpt_entry_size_at);
    const uint32_t entry_count = view.u32_at(gpt_entry_count_at);
    if (entry_size < gpt_least_entry || entry_size > gpt_largest_entry) return false;
    uint64_t at = view.u64_at(gpt_entries_lba_at);
    if (at > m_disk.size() / m_sector) return false;
    at *= m_sector;
    for (uint32_t i = 0; i < std::min(entry_count, gpt_most_entries); ++i, at += entry_size) {
      std::vector<uint8_t> entry;
      if (!read_exact(m_disk, entry, entry_size, at) || !take_gpt_entry(byte_view(entry))) {
        m_list.clear();
        return false;
      }
    }
    return !m_list.empty();
  }

 private:
  /// Takes the slots of an extended boot record at sector `position`; returns the next one's place.
  uint64_t take_slots(byte_view block, uint64_t position, uint64_t extended_start,
                      uint16_t& last_type) {
    for (uint32_t i = 0; i < slot_count; ++i) {
      const table_slot slot = slot_at(block, i);
      if (!slot.is_used()) return 0;
      last_type = slot.type;
      const uint64_t base = slot.is_extended() ? extended_start : position;
      m_list.push_back(partition_of(slot, base, m_sector));
      if (slot.is_extended()) return extended_start + slot.first_sector;
    }
    return 0;
  }

  /// A volume at sector 63 that no table names, in front of everything else.
  void guess_volume_in_front(uint64_t extended_start, uint16_t last_type) {
    std::vector<uint8_t> block;
    if (!read_some(m_disk, block, small_sector, m_sector * usual_first_sector)) return;
    if (!byte_view(block).text_at(3, "NTFS    ")) return;
    partition_info guessed;
    guessed.start_sector = usual_first_sector;
    guessed.sector_count = extended_start - std::min(extended_start, usual_first_sector);
    guessed.type = static_cast<uint16_t>(last_type | partition_info::guess_bit);
    guessed.bytes_per_sector = m_sector;
    m_list.push_front(guessed);
  }

  bool take_gpt_entry(byte_view entry) {
    const byte_view type_guid = entry.clip(0, guid_bytes);
    const bool live = std::any_of(type_guid.data(), type_guid.data() + type_guid.size(),
                                  [](uint8_t byte) { return byte != 0; });
    if (!live) return true;
    const uint64_t first = entry.u64_at(gpt_first_lba_at);
    const uint64_t last = entry.u64_at(gpt_last_lba_at);
    if (first > m_disk.size() / m_sector) return false;
    partition_info partition;
    partition.bytes_per_sector = m_sector;
    partition.start_sector = first;
    partition.sector_count = last != 0 ? last - first + 1 : 0;
    partition.type = gpt_type;
    std::vector<uint8_t> block;
    const bool small = partition.sector_count <= 2048 / m_sector;
    if (!read_some(m_disk, block, small ? m_sector : 2048, first * m_sector)) return false;
    probe_filesystem(partition, byte_view(block));
    m_list.push_back(partition);
    return true;
  }

  void probe(partition_info& partition) {
    std::vector<uint8_t> block;
    if (read_some(m_disk, block, m_sector, partition.byte_offset())) {
      probe_filesystem(partition, byte_view(block));
    }
  }

  RAW_DISK_IO& m_disk;
  partition_list& m_list;
  uint32_t m_sector;
};

bool leads_somewhere(const partition_list& list) {
  return std::any_of(list.begin(), list.end(), [](const partition_info& partition) {
    return partition.recognised || partition.type == gpt_type;
  });
}

/// Walks the table at the smallest sector size that leads somewhere: disks with larger sectors bear
/// the same mark at 510.
bool walk_table(RAW_DISK_IO& disk, partition_list& list, byte_view start) {
  const bool found = table_walk(disk, list, small_sector).walk(start);
  if (found && leads_somewhere(list)) return true;
  for (const uint32_t sector : larger_sectors) {
    partition_list other;
    if (table_walk(disk, other, sector).walk(start) && leads_somewhere(other)) {
      list = other;
      return true;
    }
  }
  return found;
}

/// Looks for a stray table block by block in front of 1 MiB.
bool guess_table(RAW_DISK_IO& disk, partition_list& list) {
  std::vector<uint8_t> block;
  for (uint64_t offset = small_sector; offset <= guess_limit; offset += small_sector) {
    if (!read_exact(disk, block, small_sector, offset)) return false;
    if (!has_table(byte_view(block))) continue;
    table_walk walk(disk, list, small_sector);
    return walk.walk_chain(offset / small_sector) && !list.empty();
  }
  return false;
}

bool take_bare_volume(partition_list& list, byte_view start) {
  partition_info volume;
  probe_filesystem(volume, start);
  list.assign(1, volume);
  return true;
}

}  // namespace

bool find_partitions(RAW_DISK_IO& disk, partition_list& list, bool guess) {
  list.clear();
  std::vector<uint8_t> bytes;
  if (!read_some(disk, bytes, first_read_bytes, 0)) return false;
  const byte_view start(bytes);
  if (has_table(start)) return walk_table(disk, list, start);
  if (is_bare_volume(start)) return take_bare_volume(list, start.clip(0, small_sector));
  for (const uint32_t sector : larger_sectors) {
    if (start.u16_at(sector - 2) != boot_mark) continue;
    return table_walk(disk, list, sector).walk(start);
  }
  const bool ext = start.u16_at(1080) == 0xEF53;
  if (guess && guess_table(disk, list)) return true;
  if (ext) return take_bare_volume(list, start.clip(0, 2048));
  return false;
}

}  // namespace ovrik
