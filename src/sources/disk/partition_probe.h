// Tells the file system of a partition by its first bytes.
#pragma once

#include <cstddef>

#include "base/byte_view.h"
#include "sources/disk/partition_info.h"

namespace ovrik {

/// Up to here a volume must be read for each of its file systems to be told.
constexpr size_t superblock_end = 2048;

/// Sets the type of `partition` from its first bytes, 512 or more (ext and HFS+ are told by 2048
/// only). The size of its sectors is set where it begins at sector 0, and their count where it is
/// still 0; what FAT32 says of the count is always taken. False: no file system was recognised, and
/// `partition` is as it was.
bool probe_filesystem(partition_info& partition, byte_view bytes);

/// True if an ext superblock bears its mark in the first 2048 bytes of a volume.
bool has_ext_mark(byte_view bytes);

}  // namespace ovrik
