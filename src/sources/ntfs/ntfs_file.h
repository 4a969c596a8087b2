// The bytes of a file on an NTFS volume.
#pragma once

#include <cstdint>
#include <memory>

#include "base/diagnostics_log.h"
#include "sources/host/byte_source.h"
#include "sources/ntfs/ntfs_volume.h"

namespace ovrik {

/// Opens the unnamed data of MFT entry `inode`, whose bytes come from the volume when they are
/// asked for. Holes of a file that is not compressed are left out, so that it comes out shorter;
/// pieces that are lost are zeros. Clusters that cannot be read and units of compression that make
/// no sense fail when they are asked for, each by itself. Nothing: there is no such data.
std::unique_ptr<byte_source> open_file_data(std::shared_ptr<ntfs_volume> volume, uint64_t inode,
                                            diagnostics_log& log);

}  // namespace ovrik
