// SYSTEM hives inside volumes: of images, of the running system and of its shadow copies.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "driver/hive_opening.h"
#include "hive/reg_clas.h"
#include "sources/disk/raw_device.h"
#include "sources/disk/raw_disk_io.h"
#include "sources/ntfs/ntfs_volume.h"

namespace ovrik {

/// Where a Windows volume keeps its SYSTEM hive.
constexpr const char* default_hive_path = "\\windows\\system32\\config\\system";

/// Where in a source the volume lies and where the hive in the volume, and the devices of the
/// running system.
struct volume_place {
  uint64_t volume_offset = 0;  ///< in bytes
  std::string inner_path;
  const hive_opening& opening;
  const device_calls& devices = devices_of_host();
};

// Nothing, in each of the following: the source does not open, its volume does not mount or has no
// such file, or the file is no hive.

/// Reads the hive at `inner_path` of a mounted volume, whose bytes come when they are asked for.
std::unique_ptr<reg_hive> read_volume_hive(const std::shared_ptr<ntfs_volume>& volume,
                                           const std::string& inner_path,
                                           const hive_opening& opening);

/// Reads the hive of an NTFS volume in `disk`, which may be nothing.
std::unique_ptr<reg_hive> open_volume_hive(std::unique_ptr<RAW_DISK_IO> disk,
                                           const volume_place& place);

/// Reads the hive inside the image that `disk` is, or inside what a path with two backslashes in
/// front leads to.
std::unique_ptr<reg_hive> open_image_hive(const std::string& image,
                                          std::unique_ptr<RAW_DISK_IO> disk,
                                          const volume_place& place);

/// Reads the hive from the mounted volume whose drive letter `path` begins with; without one,
/// `path` as a whole names the volume.
std::unique_ptr<reg_hive> open_live_hive(const std::string& path, const volume_place& place);

/// Reads the hive of a shadow copy: as a file of `device`, else from its volume.
std::unique_ptr<reg_hive> open_shadow_copy_hive(const std::string& device,
                                                const volume_place& place);

}  // namespace ovrik
