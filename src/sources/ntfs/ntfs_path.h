// Paths inside an NTFS volume.
#pragma once

#include <cstdint>
#include <string>

#include "base/diagnostics_log.h"
#include "sources/ntfs/ntfs_volume.h"

namespace ovrik {

/// Finds the MFT entry that `full_path` leads to from the root directory, A to Z taken as a to z.
/// The parts of the path are separated by "/" if there is one in it, else by backslashes. A drive
/// letter or a shadow copy's device in front is ignored, and so is what follows a ":" in a part.
/// `log` is told every step. False: there is no such file; `inode` is then the last directory that
/// was found.
bool lookup_path(ntfs_volume& volume, const std::string& full_path, uint64_t& inode,
                 diagnostics_log& log);

}  // namespace ovrik
