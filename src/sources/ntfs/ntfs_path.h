// Paths inside an NTFS volume.
#pragma once

#include <cstdint>
#include <string>

#include "base/diagnostics_log.h"
#include "sources/ntfs/ntfs_volume.h"

namespace ovrik {

/// Finds the MFT entry that `path` leads to from the root directory, A to Z taken as a to z. A
/// drive letter or a shadow copy's device in front is passed over, as is what stands behind a ":"
/// in a part of the path; "/" separates the parts if there is one, else a backslash. `log` tells
/// the walk. False: there is no such file; `inode` then holds what the walk reached.
bool lookup_path(ntfs_volume& volume, const std::string& full_path, uint64_t& inode,
                 diagnostics_log& log);

}  // namespace ovrik
