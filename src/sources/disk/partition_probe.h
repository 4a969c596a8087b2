// Tells the file system of a partition by its first bytes.
#pragma once

#include "base/byte_view.h"
#include "sources/disk/partitions.h"

namespace ovrik {

/// Sets the type, the sector size and, where they are still unknown or better known to the file
/// system, the place and length of `partition` from its first bytes, 512 or more. False: no file
/// system was recognised, and `partition` is as it was.
bool probe_filesystem(partition_info& partition, byte_view bytes);

}  // namespace ovrik
