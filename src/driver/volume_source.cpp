#include "driver/volume_source.h"

#include <utility>

#include "base/drive_letter.h"
#include "driver/plain_hive.h"
#include "sources/disk/retried_disk.h"
#include "sources/ntfs/ntfs_file.h"
#include "sources/ntfs/ntfs_path.h"

namespace ovrik {

namespace {

std::unique_ptr<reg_hive> open_device_hive(device_kind kind, const std::string& name,
                                           const volume_place& place) {
  auto device = open_device(kind, name, place.devices);
  return open_volume_hive(retried_disk(std::move(device), name, place.opening.faults), place);
}

}  // namespace

std::unique_ptr<reg_hive> read_volume_hive(ntfs_volume& volume, const std::string& inner_path,
                                           const hive_opening& opening) {
  uint64_t inode = 0;
  uni::memory_block bytes;
  if (!lookup_path(volume, inner_path, inode, opening.log) ||
      !read_file_by_inode(volume, inode, bytes, opening.log)) {
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
  return read_volume_hive(volume, place.inner_path, place.opening);
}

std::unique_ptr<reg_hive> open_image_hive(const std::string& image,
                                          std::unique_ptr<RAW_DISK_IO> disk,
                                          const volume_place& place) {
  if (image.starts_with("\\\\")) {
    if (auto hive = open_plain_hive(image + place.inner_path, place.opening)) return hive;
  }
  return open_volume_hive(std::move(disk), place);
}

std::unique_ptr<reg_hive> open_live_hive(const std::string& path, const volume_place& place) {
  const std::string volume = begins_with_drive(path) ? path.substr(0, 2) : path;
  return open_device_hive(device_kind::volume, volume, place);
}

std::unique_ptr<reg_hive> open_shadow_copy_hive(const std::string& device,
                                                const volume_place& place) {
  if (auto hive = open_plain_hive(device + place.inner_path, place.opening)) return hive;
  return open_device_hive(device_kind::device, device, place);
}

}  // namespace ovrik
