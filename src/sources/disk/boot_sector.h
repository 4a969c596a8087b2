// The first sector of a volume, as far as file systems of the FAT family and NTFS share it: jump,
// OEM identifier, BIOS parameter block.
#pragma once

#include <cstddef>

#include "base/byte_view.h"

namespace ovrik::boot_sector {

constexpr size_t bytes = 512;  ///< what is read of it; the sectors of a disk may be larger

constexpr size_t oem_id_at = 3;
constexpr size_t oem_id_bytes = 8;
constexpr size_t bytes_per_sector_at = 11;  ///< u16, of the BIOS parameter block

/// True if the sector is one of NTFS.
inline bool is_ntfs(byte_view sector) { return sector.text_at(oem_id_at, "NTFS    "); }

}  // namespace ovrik::boot_sector
