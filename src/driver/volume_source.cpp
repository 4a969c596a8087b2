#include "driver/volume_source.h"

#include <utility>
#include <vector>

#include "base/drive_letter.h"
#include "driver/logged_hive.h"
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

/// The hive that MFT entry `inode` is, with `logs` laid over it.
std::unique_ptr<reg_hive> open_inode(const std::shared_ptr<ntfs_volume>& volume, uint64_t inode,
                                     const std::string& name, const hive_opening& opening,
                                     const std::vector<hive_log_source>& logs) {
  auto data = open_file_data(volume, inode, opening.log);
  if (data == nullptr) return nullptr;
  bool ok = false;
  auto hive = std::make_unique<reg_hive>(source_reader(std::move(data), name),
                                         limits_of_hives_in_volumes, opening.faults, ok, logs);
  if (!ok) return nullptr;
  return hive;
}

/// The logs of the hive at `inner_path`, in its folder.
found_logs logs_on_volume(const std::shared_ptr<ntfs_volume>& volume, const std::string& inner_path,
                          const hive_opening& opening) {
  found_logs found;
  for (const char* end : log_name_ends) {
    uint64_t inode = 0;
    const std::string path = inner_path + end;
    if (!lookup_path(*volume, path, inode, opening.log)) continue;
    const std::shared_ptr<byte_source> data = open_file_data(volume, inode, opening.log);
    if (data == nullptr) continue;
    found.names.push_back(path);
    found.sources.push_back({data->size(), [data](uint8_t* buffer, size_t& size, uint64_t offset) {
                               data->read_at(buffer, size, offset);
                             }});
  }
  return found;
}

}  // namespace

std::unique_ptr<reg_hive> read_volume_hive(const std::shared_ptr<ntfs_volume>& volume,
                                           const std::string& inner_path,
                                           const hive_opening& opening) {
  if (volume->mounted_by_mirror()) {
    diag_printf(opening.log, "->info: record 0 of the MFT taken from $MFTMirr");
  }
  uint64_t inode = 0;
  if (!lookup_path(*volume, inner_path, inode, opening.log)) return nullptr;
  if (!opening.with_logs) return open_inode(volume, inode, inner_path, opening, {});
  const found_logs logs = logs_on_volume(volume, inner_path, opening);
  return open_with_logs(
      [&](const auto& sources) { return open_inode(volume, inode, inner_path, opening, sources); },
      logs, opening);
}

std::unique_ptr<reg_hive> open_volume_hive(std::unique_ptr<RAW_DISK_IO> disk,
                                           const volume_place& place) {
  if (disk == nullptr) return nullptr;
  auto volume = std::make_shared<ntfs_volume>(std::move(disk), place.volume_offset);
  if (!volume->mount()) return nullptr;
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
