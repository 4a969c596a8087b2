#include "driver/volume_source.h"

#include <utility>

#include "sources/ntfs_file.h"
#include "sources/ntfs_path.h"

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
                                           uint64_t volume_offset, const std::string& inner_path,
                                           diagnostics_log& log) {
  ntfs_volume volume(std::move(disk), volume_offset);
  return volume.mount() ? read_volume_hive(volume, inner_path, log) : nullptr;
}

}  // namespace ovrik
