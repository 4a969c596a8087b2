// Which byte of a disk the NTFS volume begins at.
#pragma once

#include <cstdint>
#include <vector>

#include "sources/disk/partition_info.h"
#include "sources/disk/raw_disk_io.h"

namespace ovrik {

/// How the search for a volume ended.
enum class volume_outcome {
  at_offset,       ///< a volume begins at `offset`, whether a table names it or not
  offset_outside,  ///< the offset asked for lies behind the end of the disk
  no_partitions,   ///< the disk has no partition table and is no volume itself
  cut_short,       ///< the table names a volume at `offset`, but the disk ends within it
  other_offset,    ///< no NTFS partition begins where asked; the last one begins at `offset`
  no_ntfs,         ///< the table names partitions, but none of NTFS
};

/// What was wrong with a partition on the way.
enum class partition_fault {
  begins_outside,  ///< an NTFS partition whose first byte lies behind the end of the disk
  not_ntfs,        ///< begins at the offset asked for, but is of another type
};

/// A partition that a user should know of before choosing another.
struct partition_finding {
  partition_fault fault;
  partition_info partition;
};

/// Where on a disk to read, and all that was found on the way there.
struct volume_choice {
  volume_outcome outcome = volume_outcome::no_partitions;
  uint64_t asked_offset = 0;  ///< in bytes, as it was asked for
  /// In bytes: where to read. Without a table this may be 0, the whole disk, whatever was asked
  /// for. The same as `asked_offset` where no volume was found.
  uint64_t offset = 0;
  bool table_is_guess = false;  ///< the table is a stray one: sector 0 does not lead to it
  partition_list partitions;    ///< in the order of the table; empty without one
  std::vector<partition_finding> findings;  ///< in the order in which the partitions were looked at

  /// The partition that begins at `offset`. Nothing: no table names one there.
  const partition_info* partition() const;

  /// True if the disk has an NTFS volume that begins at `offset`, even one that is cut short.
  bool has_volume() const {
    return outcome == volume_outcome::at_offset || outcome == volume_outcome::cut_short ||
           outcome == volume_outcome::other_offset;
  }
};

/// Checks that an NTFS volume begins at byte `asked_offset` of `disk`, or finds the last one that
/// the partition table names. A disk without a table is believed to have a volume where the boot
/// sector of one stands: at the offset, or else at the start. So is one at the offset that the
/// table does not name. `ignore_size` accepts a volume that the disk cuts short.
volume_choice choose_volume(RAW_DISK_IO& disk, uint64_t asked_offset, bool ignore_size);

}  // namespace ovrik
