// Which byte of a disk the NTFS volume begins at.
#pragma once

#include <cstdint>
#include <ostream>

#include "sources/disk/raw_disk_io.h"

namespace ovrik {

/// Checks that an NTFS volume begins at byte `offset` of `disk`, or finds the last one that the
/// partition table names. What is to be said goes to `text`, line by line. True: `offset` is right.
/// False with `found`: there is an NTFS volume, but not there, or the disk ends within it; `offset`
/// is then the last one of the table, if the table names one elsewhere. False without: there is
/// none. A disk without a table is believed to have a volume where one begins at the offset.
/// `ignore_size` passes a volume that the disk cuts short.
bool pick_ntfs_offset(std::ostream& text, bool& found, uint64_t& offset, RAW_DISK_IO& disk,
                      bool ignore_size);

}  // namespace ovrik
