// The bytes of a file on an NTFS volume.
#pragma once

#include <cstdint>

#include "base/diagnostics_log.h"
#include "sources/host/memory_block.h"
#include "sources/ntfs/ntfs_volume.h"

namespace ovrik {

/// Fills the empty `bytes` with the unnamed data of MFT entry `inode`. Holes of a file that is not
/// compressed are left out, so that it comes out shorter; what lies behind the first cluster that
/// cannot be read is left out as well. False: there is no such data, or none of it can be read at
/// all.
bool read_file_by_inode(ntfs_volume& volume, uint64_t inode, uni::memory_block& bytes,
                        diagnostics_log& log);

}  // namespace ovrik
