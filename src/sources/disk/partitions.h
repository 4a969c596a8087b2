// The partitions of a disk: master boot record, extended boot records and GPT.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "sources/disk/raw_disk_io.h"

namespace ovrik {

/// One partition. Its type is an MBR type byte, which what was found in it overrules.
struct partition_info {
  static constexpr uint16_t guess_bit = 0x8000;  ///< in `type`: no table names this partition

  uint64_t start_sector = 0;
  uint64_t sector_count = 0;
  uint16_t type = 0;
  uint32_t bytes_per_sector = 512;
  bool recognised = false;  ///< a file system was found in it

  uint64_t byte_offset() const { return start_sector * bytes_per_sector; }
};

/// In the order of the table; a guessed partition stands in front.
using partition_list = std::deque<partition_info>;

/// Fills `list` with the partitions of a disk, or with one that stands for the whole of a bare
/// volume. With `guess`, a disk without a table is searched for a stray one in its first MiB.
/// False: there is none, or what the table needs cannot be read.
bool find_partitions(RAW_DISK_IO& disk, partition_list& list, bool guess);

/// The name of a partition type, with " [guess]" behind it if the guess bit is set.
std::string partition_type_name(uint16_t type);

/// True if the name of the type says NTFS.
bool is_ntfs_type(uint16_t type);

/// True for a type byte that a table entry may have.
bool is_known_partition_type(uint8_t type);

}  // namespace ovrik
