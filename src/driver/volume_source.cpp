#include "driver/volume_source.h"

#include <utility>

#include "driver/hive_source.h"
#include "sources/disk/image_disk.h"
#include "sources/ntfs/ntfs_file.h"
#include "sources/ntfs/ntfs_path.h"

namespace ovrik {

std::unique_ptr<reg_hive> read_volume_hive(ntfs_volume& volume, const std::string& inner_path,
                                           diagnostics_log& log) {
  uint64_t inode = 0;
  uni::memory_block bytes;
  if (!lookup_path(volume, inner_path, inode, log) ||
      !read_file_by_inode(volume, inode, bytes, log)) {
    return nullptr;
  }
  bool ok = false;
  auto hive = std::make_unique<reg_hive>(std::move(bytes), ok);
  if (!ok) return nullptr;
  return hive;
}

std::unique_ptr<reg_hive> open_volume_hive(std::unique_ptr<RAW_DISK_IO> disk,
                                           const volume_place& place) {
  if (disk == nullptr) return nullptr;
  ntfs_volume volume(std::move(disk), place.volume_offset);
  if (!volume.mount()) return nullptr;
  return read_volume_hive(volume, place.inner_path, place.log);
}

std::unique_ptr<reg_hive> open_image_hive(const std::string& image, const volume_place& place) {
  if (image.starts_with("\\\\")) {
    if (auto hive = open_plain_hive(image + place.inner_path)) return hive;
  }
  return open_volume_hive(open_image(image), place);
}

std::unique_ptr<reg_hive> open_live_hive(const std::string& path, const volume_place& place) {
  const bool has_drive = path.size() >= 2 && path[1] == ':';
  const std::string volume = has_drive ? path.substr(0, 2) : path;
  return open_volume_hive(open_device(device_kind::volume, volume, place.devices), place);
}

std::unique_ptr<reg_hive> open_shadow_copy_hive(const std::string& device,
                                                const volume_place& place) {
  if (auto hive = open_plain_hive(device + place.inner_path)) return hive;
  return open_volume_hive(open_device(device_kind::device, device, place.devices), place);
}

}  // namespace ovrik
