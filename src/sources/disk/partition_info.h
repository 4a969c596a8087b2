// One partition of a disk.
#pragma once

#include <cstdint>
#include <deque>

namespace ovrik {

/// One partition. Its type is that of an MBR partition record; what was found in the partition
/// counts for more than what the table says.
struct partition_info {
  static constexpr uint16_t guess_bit = 0x8000;  ///< in `type`: no table names this partition

  uint64_t start_sector = 0;
  uint64_t sector_count = 0;
  uint16_t type = 0;
  uint32_t bytes_per_sector = 512;  ///< never 0
  bool recognised = false;          ///< a file system was found in it
  bool from_backup = false;         ///< the second copy of a GPT names it, the first is damaged

  uint64_t byte_offset() const { return start_sector * bytes_per_sector; }
};

/// In the order of the table; a guessed partition stands in front.
using partition_list = std::deque<partition_info>;

}  // namespace ovrik
