// SYSTEM hives inside volumes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/diagnostics_log.h"
#include "hive/reg_clas.h"
#include "sources/ntfs_volume.h"
#include "sources/raw_disk_io.h"

namespace ovrik {

/// Where a Windows volume keeps its SYSTEM hive.
constexpr const char* default_hive_path = "\\windows\\system32\\config\\system";

/// Reads the hive at `inner_path` of a mounted volume. Nothing: there is no such file, or it is no
/// hive.
std::unique_ptr<reg_hive> read_volume_hive(ntfs_volume& volume, const std::string& inner_path,
                                           diagnostics_log& log);

/// Reads the hive at `inner_path` of the NTFS volume that begins `volume_offset` bytes into `disk`.
/// Nothing: the volume does not mount, has no such file, or the file is no hive.
std::unique_ptr<reg_hive> open_volume_hive(std::unique_ptr<RAW_DISK_IO> disk,
                                           uint64_t volume_offset, const std::string& inner_path,
                                           diagnostics_log& log);

}  // namespace ovrik
