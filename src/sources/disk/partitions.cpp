#include "sources/disk/partitions.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <vector>

#include "base/byte_view.h"
#include "sources/disk/boot_sector.h"
#include "sources/disk/partition_probe.h"
#include "sources/disk/partition_types.h"

namespace ovrik {

namespace {

constexpr uint32_t first_read_bytes = 16384;
constexpr uint32_t gpt_read_bytes = 32768;
constexpr uint32_t small_sector_bytes = 512;
constexpr uint32_t larger_sector_bytes[] = {1024, 2048, 4096, 8192, 16384};

// Master and extended boot records: the mark at their end and four MBR partition records.
constexpr size_t boot_mark_at = 510;  // u16
constexpr uint16_t boot_mark = 0xAA55;
constexpr size_t slots_at = 446;
constexpr size_t slot_bytes = 16;
constexpr uint32_t slot_count = 4;
constexpr size_t slot_type_at = 4;           // u8, OSType
constexpr size_t slot_first_sector_at = 8;   // u32, StartingLBA
constexpr size_t slot_sector_count_at = 12;  // u32, SizeInLBA
constexpr uint64_t usual_first_sector = 63;
constexpr uint64_t guess_limit = 0x100000;  // bytes

// UEFI GPT header, which stands in sector 1 and in the last one, and GPT partition entries.
constexpr std::string_view gpt_mark = "EFI PART";  // at 0
constexpr uint64_t gpt_header_sector = 1;
constexpr size_t gpt_my_lba_at = 24;       // u64, MyLBA
constexpr size_t gpt_other_lba_at = 32;    // u64, AlternateLBA
constexpr size_t gpt_entries_lba_at = 72;  // u64, PartitionEntryLBA
constexpr size_t gpt_entry_count_at = 80;  // u32, NumberOfPartitionEntries
constexpr size_t gpt_entry_size_at = 84;   // u32, SizeOfPartitionEntry
constexpr size_t gpt_first_lba_at = 32;    // u64 of an entry, StartingLBA
constexpr size_t gpt_last_lba_at = 40;     // u64 of an entry, EndingLBA
constexpr uint32_t gpt_least_entry = 48;   // bytes: what is read of an entry
constexpr uint32_t gpt_largest_entry = 0x10000;
constexpr uint32_t gpt_most_entries = 0x10000;
constexpr size_t guid_bytes = 16;

struct table_slot {
  uint8_t type = 0;
  uint32_t first_sector = 0;
  uint32_t sector_count = 0;

  bool is_extended() const {
    return type == partition_type::extended || type == partition_type::extended_lba;
  }
  bool is_used() const { return type != 0 && sector_count != 0 && is_known_partition_type(type); }
};

table_slot slot_at(byte_view block, uint32_t index) {
  const uint64_t at = slots_at + uint64_t{slot_bytes} * index;
  return {block.u8_at(at + slot_type_at), block.u32_at(at + slot_first_sector_at),
          block.u32_at(at + slot_sector_count_at)};
}

/// True for the boot sector of a volume that has no table around it: the same mark ends it.
bool is_bare_volume(byte_view block) {
  constexpr std::string_view marks[] = {"EXFA", "MSDO", "NTFS"};
  return std::any_of(std::begin(marks), std::end(marks), [block](std::string_view mark) {
    return block.text_at(boot_sector::oem_id_at, mark);
  });
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

/// Reads as much of `size` bytes as the disk has. False: nothing came.
bool read_some(RAW_DISK_IO& disk, std::vector<uint8_t>& bytes, uint32_t size, uint64_t offset) {
  bytes.resize(size);
  const bool read = disk.read(bytes.data(), size, offset);
  bytes.resize(read ? size : 0);
  return !bytes.empty();
}

/// `base_sector` is the one that the slot counts from.
partition_info partition_of(const table_slot& slot, uint64_t base_sector, uint32_t sector_bytes) {
  partition_info partition;
  partition.start_sector = base_sector + slot.first_sector;
  partition.sector_count = slot.sector_count;
  partition.type = slot.type;
  partition.bytes_per_sector = sector_bytes;
  return partition;
}

/// Walks the tables of one disk at one sector size.
class table_walk {
 public:
  table_walk(RAW_DISK_IO& disk, partition_list& list, uint32_t sector_bytes)
      : m_disk(disk), m_list(list), m_sector_bytes(sector_bytes) {}

  /// The four slots of the master boot record and what they lead to.
  bool walk(byte_view block) {
    uint64_t chain_sector = 0;
    for (uint32_t i = 0; i < slot_count; ++i) {
      const table_slot slot = slot_at(block, i);
      if (slot.type == partition_type::gpt && chain_sector == 0) return walk_gpt();
      if (slot.is_used()) m_list.push_back(partition_of(slot, 0, m_sector_bytes));
      if (slot.is_extended() && chain_sector == 0) chain_sector = slot.first_sector;
    }
    // A chain that cannot be read takes nothing from what the table itself names.
    if (chain_sector != 0) walk_chain(chain_sector);
    return probe_all();
  }

  /// Sets the type of each partition by what is found in it. False: there is none.
  bool probe_all() {
    std::vector<uint8_t> block;
    for (partition_info& partition : m_list) {
      if (read_some(m_disk, block, m_sector_bytes, partition.byte_offset())) {
        probe_filesystem(partition, byte_view(block));
      }
    }
    return !m_list.empty();
  }

  /// The chain of extended boot records from `start_sector` on. False: the first cannot be read.
  bool walk_chain(uint64_t start_sector) {
    std::vector<uint8_t> block;
    if (!read_some(m_disk, block, small_sector_bytes, m_sector_bytes * start_sector)) return false;
    uint16_t last_type = 0;
    uint64_t next = take_slots(byte_view(block), start_sector, start_sector, last_type);
    guess_volume_in_front(start_sector, last_type);
    std::set<uint64_t> visited = {start_sector};
    while (next != 0 && visited.insert(next).second) {
      if (!read_some(m_disk, block, small_sector_bytes, m_sector_bytes * next)) break;
      if (!has_table(byte_view(block))) break;
      next = take_slots(byte_view(block), next, start_sector, last_type);
    }
    return true;
  }

  /// The GPT or, where that leads nowhere, its second copy. False: neither has a partition.
  bool walk_gpt() {
    std::vector<uint8_t> header;
    const bool is_there =
        read_some(m_disk, header, gpt_read_bytes, gpt_header_sector * m_sector_bytes);
    const byte_view view(header);
    if (is_there && take_gpt(view, gpt_header_sector)) return true;
    const uint64_t last = m_disk.size() / m_sector_bytes - 1;
    const bool has_mark = view.text_at(0, gpt_mark);
    return (has_mark && walk_backup_gpt(view.u64_at(gpt_other_lba_at))) || walk_backup_gpt(last);
  }

  /// Takes the partitions of the GPT whose backup header stands in `sector`.
  bool walk_backup_gpt(uint64_t sector) {
    std::vector<uint8_t> header;
    if (sector > m_disk.size() / m_sector_bytes ||
        !read_some(m_disk, header, small_sector_bytes, sector * m_sector_bytes) ||
        !byte_view(header).text_at(0, gpt_mark) || !take_gpt(byte_view(header), sector)) {
      return false;
    }
    for (partition_info& partition : m_list) partition.from_backup = true;
    return true;
  }

 private:
  /// Takes the partitions of the GPT whose header stands in `sector`. Every partition must be
  /// readable: else it counts as none. False: none.
  bool take_gpt(byte_view header, uint64_t sector) {
    m_list.clear();
    if (header.u64_at(gpt_my_lba_at) != sector) return false;
    const uint32_t entry_size = header.u32_at(gpt_entry_size_at);
    const uint32_t entry_count = header.u32_at(gpt_entry_count_at);
    if (entry_size < gpt_least_entry || entry_size > gpt_largest_entry) return false;
    const uint64_t entries_sector = header.u64_at(gpt_entries_lba_at);
    if (entries_sector > m_disk.size() / m_sector_bytes) return false;
    uint64_t at = entries_sector * m_sector_bytes;
    for (uint32_t i = 0; i < std::min(entry_count, gpt_most_entries); ++i, at += entry_size) {
      std::vector<uint8_t> entry;
      if (!read_exact(m_disk, entry, entry_size, at) || !take_gpt_entry(byte_view(entry))) {
        m_list.clear();
        return false;
      }
    }
    return !m_list.empty();
  }

  /// Takes the slots of the extended boot record in `sector` up to the first that is not used;
  /// `last_type` becomes the type of the last one taken. Returns the sector of the next record, 0
  /// if there is none.
  uint64_t take_slots(byte_view block, uint64_t sector, uint64_t extended_start,
                      uint16_t& last_type) {
    for (uint32_t i = 0; i < slot_count; ++i) {
      const table_slot slot = slot_at(block, i);
      if (!slot.is_used()) return 0;
      last_type = slot.type;
      const uint64_t base = slot.is_extended() ? extended_start : sector;
      m_list.push_back(partition_of(slot, base, m_sector_bytes));
      if (slot.is_extended()) return extended_start + slot.first_sector;
    }
    return 0;
  }

  /// Puts a volume at sector 63 that no table names in front of everything else.
  void guess_volume_in_front(uint64_t extended_start, uint16_t last_type) {
    std::vector<uint8_t> block;
    if (!read_some(m_disk, block, small_sector_bytes, m_sector_bytes * usual_first_sector)) return;
    if (!boot_sector::is_ntfs(byte_view(block))) return;
    partition_info guessed;
    guessed.start_sector = usual_first_sector;
    guessed.sector_count = extended_start - std::min(extended_start, usual_first_sector);
    guessed.type = static_cast<uint16_t>(last_type | partition_info::guess_bit);
    guessed.bytes_per_sector = m_sector_bytes;
    m_list.push_front(guessed);
  }

  /// Takes an entry, unless it is empty. False: its partition begins where nothing can be read.
  bool take_gpt_entry(byte_view entry) {
    if (const byte_view type_guid = entry.clip(0, guid_bytes); type_guid.all_zero()) return true;
    const uint64_t first = entry.u64_at(gpt_first_lba_at);
    const uint64_t last = entry.u64_at(gpt_last_lba_at);
    if (first > m_disk.size() / m_sector_bytes) return false;
    partition_info partition;
    partition.bytes_per_sector = m_sector_bytes;
    partition.start_sector = first;
    partition.sector_count = last != 0 ? last - first + 1 : 0;
    partition.type = partition_type::gpt;
    std::vector<uint8_t> block;
    const bool small = partition.sector_count <= superblock_end / m_sector_bytes;
    const auto wanted = small ? m_sector_bytes : uint32_t{superblock_end};
    if (!read_some(m_disk, block, wanted, first * m_sector_bytes)) return false;
    probe_filesystem(partition, byte_view(block));
    m_list.push_back(partition);
    return true;
  }

  RAW_DISK_IO& m_disk;
  partition_list& m_list;
  uint32_t m_sector_bytes;
};

bool leads_somewhere(const partition_list& list) {
  return std::any_of(list.begin(), list.end(), [](const partition_info& partition) {
    return partition.recognised || partition.type == partition_type::gpt;
  });
}

/// Walks the table with the smallest sector size that leads to a file system or a GPT: a disk with
/// larger sectors bears the same mark at 510, and nothing else says how large they are.
bool walk_table(RAW_DISK_IO& disk, partition_list& list, byte_view start) {
  const bool found = table_walk(disk, list, small_sector_bytes).walk(start);
  if (found && leads_somewhere(list)) return true;
  for (const uint32_t sector_bytes : larger_sector_bytes) {
    partition_list other;
    if (table_walk(disk, other, sector_bytes).walk(start) && leads_somewhere(other)) {
      list = other;
      return true;
    }
  }
  return found;
}

/// Looks for a stray table, block by block up to 1 MiB.
bool guess_table(RAW_DISK_IO& disk, partition_list& list) {
  std::vector<uint8_t> block;
  for (uint64_t offset = small_sector_bytes; offset <= guess_limit; offset += small_sector_bytes) {
    if (!read_exact(disk, block, small_sector_bytes, offset)) return false;
    if (!has_table(byte_view(block))) continue;
    table_walk walk(disk, list, small_sector_bytes);
    return walk.walk_chain(offset / small_sector_bytes) && walk.probe_all();
  }
  return false;
}

/// Looks for the second copy of a GPT, of which nothing at the start of the disk is left.
bool guess_gpt(RAW_DISK_IO& disk, partition_list& list) {
  for (const uint32_t sector_bytes : {small_sector_bytes, 4096U}) {
    const uint64_t sectors = disk.size() / sector_bytes;
    if (sectors != 0 && table_walk(disk, list, sector_bytes).walk_backup_gpt(sectors - 1)) {
      return true;
    }
  }
  list.clear();
  return false;
}

/// Makes `list` the one volume that begins with `start`, of whatever file system.
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
  if (is_bare_volume(start)) return take_bare_volume(list, start.clip(0, small_sector_bytes));
  for (const uint32_t sector_bytes : larger_sector_bytes) {
    if (start.u16_at(sector_bytes - 2) != boot_mark) continue;
    return table_walk(disk, list, sector_bytes).walk(start);
  }
  if (guess && guess_table(disk, list)) return true;
  if (has_ext_mark(start)) return take_bare_volume(list, start.clip(0, superblock_end));
  return guess && guess_gpt(disk, list);
}

}  // namespace ovrik
