// The partitions of a disk: master boot record (MBR), extended boot records and GUID partition
// table (GPT).
#pragma once

#include "sources/disk/partition_info.h"
#include "sources/disk/raw_disk_io.h"

namespace ovrik {

/// Fills `list` with the partitions of a disk, or with one that stands for the whole of a volume
/// that has no table around it. With `guess`, a disk without a table is searched for a stray one in
/// its first MiB. False: there is none, or what the table needs cannot be read.
bool find_partitions(RAW_DISK_IO& disk, partition_list& list, bool guess);

}  // namespace ovrik
