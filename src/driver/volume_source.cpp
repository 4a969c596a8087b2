#include "driver/volume_source.h"

#include <algorithm>
#include <deque>
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

/// The bytes of a file that was read from a volume. They stay where they are.
class bytes_source : public byte_source {
 public:
  explicit bytes_source(byte_view bytes) : m_bytes(bytes) {}

  uint64_t size() const override { return m_bytes.size(); }

  bool read_at(uint8_t* buffer, size_t& size, uint64_t offset) override {
    const byte_view there = m_bytes.clip(offset, size);
    size = there.size();
    std::copy(there.begin(), there.end(), buffer);
    return size != 0;
  }

 private:
  byte_view m_bytes;
};

std::unique_ptr<reg_hive> open_bytes(const uni::memory_block& bytes, const std::string& name,
                                     const hive_opening& opening,
                                     const std::vector<hive_log_source>& logs) {
  bool ok = false;
  auto source = std::make_unique<bytes_source>(byte_view(bytes.data(), bytes.size()));
  auto hive = std::make_unique<reg_hive>(source_reader(std::move(source), name),
                                         limits_of_hives_in_volumes, opening.faults, ok, logs);
  // The bytes are gone when the hive is used: all of them come now.
  if (ok) hive->bytes_at(0, hive->size());
  if (!ok) return nullptr;
  return hive;
}

/// The logs of the hive at `inner_path`, in its folder; `blocks` keeps their bytes.
found_logs logs_on_volume(ntfs_volume& volume, const std::string& inner_path,
                          const hive_opening& opening, std::deque<uni::memory_block>& blocks) {
  found_logs found;
  for (const char* end : log_name_ends) {
    uint64_t inode = 0;
    const std::string path = inner_path + end;
    if (!lookup_path(volume, path, inode, opening.log)) continue;
    uni::memory_block& block = blocks.emplace_back();
    if (!read_file_by_inode(volume, inode, block, opening.log)) continue;
    found.names.push_back(path);
    found.sources.push_back(log_source_of(byte_view(block.data(), block.size())));
  }
  return found;
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
  if (opening.with_logs) {
    std::deque<uni::memory_block> blocks;
    const found_logs logs = logs_on_volume(volume, inner_path, opening, blocks);
    return open_with_logs(
        [&](const auto& sources) { return open_bytes(bytes, inner_path, opening, sources); }, logs,
        opening);
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
