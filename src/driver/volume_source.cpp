#include "driver/volume_source.h"

#include <utility>

#include "base/drive_letter.h"
#include "driver/plain_hive.h"
#include "sources/ntfs/ntfs_file.h"
#include "sources/ntfs/ntfs_path.h"

namespace ovrik {

std::unique_ptr<reg_hive> read_volume_hive(std::shared_ptr<ntfs_volume> volume,
                                           const std::string& inner_path, diagnostics_log& log) {
  if (volume->mounted_by_mirror()) {
    diag_printf(log, "->info: record 0 of the MFT taken from $MFTMirr");
  }
  uint64_t inode = 0;
  if (!lookup_path(*volume, inner_path, inode, log)) return nullptr;
  auto data = open_file_data(std::move(volume), inode, log);
  if (data == nullptr) return nullptr;
  bool ok = false;
  auto hive = std::make_unique<reg_hive>(std::move(data), ok);
  if (!ok) return nullptr;
  return hive;
}

std::unique_ptr<reg_hive> open_volume_hive(std::unique_ptr<RAW_DISK_IO> disk,
                                           const volume_place& place) {
  if (disk == nullptr) return nullptr;
  auto volume = std::make_shared<ntfs_volume>(std::move(disk), place.volume_offset);
  if (!volume->mount()) return nullptr;
  return read_volume_hive(std::move(volume), place.inner_path, place.log);
}

std::unique_ptr<reg_hive> open_image_hive(const std::string& image,
                                          std::unique_ptr<RAW_DISK_IO> disk,
                                          const volume_place& place) {
  if (image.starts_with("\\\\")) {
    if (auto hive = open_plain_hive(image + place.inner_path)) return hive;
  }
  return open_volume_hive(std::move(disk), place);
}

std::unique_ptr<reg_hive> open_live_hive(const std::string& path, const volume_place& place) {
  const std::string volume = begins_with_drive(path) ? path.substr(0, 2) : path;
  return open_volume_hive(open_device(device_kind::volume, volume, place.devices), place);
}

std::unique_ptr<reg_hive> open_shadow_copy_hive(const std::string& device,
                                                const volume_place& place) {
  if (auto hive = open_plain_hive(device + place.inner_path)) return hive;
  return open_volume_hive(open_device(device_kind::device, device, place.devices), place);
}

}  // namespace ovrik
