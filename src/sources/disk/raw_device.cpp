// Devices are read in whole sectors. What they tell of themselves comes as records of Windows; each
// offset below is that of a field from the record's start.
#include "sources/disk/raw_device.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "base/byte_view.h"
#include "base/drive_letter.h"
#include "base/text.h"
#include "sources/host/memory_block.h"

namespace ovrik {

namespace {

/// What a device is asked, and how long its answer may be.
struct question {
  uint32_t code;
  size_t most_bytes;
  size_t least_bytes;  ///< up to the end of the last field that is read
};

// IOCTL_DISK_GET_DRIVE_GEOMETRY_EX and IOCTL_DISK_GET_DRIVE_GEOMETRY, answered by DISK_GEOMETRY_EX
// and DISK_GEOMETRY.
constexpr question large_geometry = {0x000700A0, 120, 32};
constexpr question plain_geometry = {0x00070000, 120, 24};
constexpr size_t cylinders_at = 0;             // u64
constexpr size_t tracks_per_cylinder_at = 12;  // u32
constexpr size_t sectors_per_track_at = 16;    // u32
constexpr size_t bytes_per_sector_at = 20;     // u32
constexpr size_t disk_size_at = 24;            // u64, only in the large form

// IOCTL_DISK_GET_PARTITION_INFO and IOCTL_DISK_GET_PARTITION_INFO_EX, answered by
// PARTITION_INFORMATION and PARTITION_INFORMATION_EX, for the length of a partition in bytes.
constexpr question plain_partition = {0x00074004, 32, 16};
constexpr size_t plain_length_at = 8;  // u64
constexpr question large_partition = {0x00070048, 144, 24};
constexpr size_t large_length_at = 16;  // u64

constexpr uint32_t usual_sector_bytes = 512;
constexpr uint32_t largest_sector_bytes = 0x10000;
constexpr uint64_t largest_disk = 0x7FFFFFFFFFFFFFFF;  // bytes; offsets are signed

struct disk_geometry {
  uint32_t bytes_per_sector = usual_sector_bytes;
  uint64_t total_size = 0;  ///< in bytes
};

bool ask(open_device_file& device, const question& asked, std::vector<uint8_t>& answer) {
  return device.ask(asked.code, asked.most_bytes, answer) && answer.size() >= asked.least_bytes;
}

/// `a` times `b`, at most `largest_disk`.
uint64_t product(uint64_t a, uint64_t b) {
  if (b != 0 && a > largest_disk / b) return largest_disk;
  return a * b;
}

/// False: the device does not tell, or tells a sector size that no device has.
bool get_geometry(open_device_file& device, disk_geometry& geometry) {
  std::vector<uint8_t> answer;
  const bool large = ask(device, large_geometry, answer);
  if (!large && !ask(device, plain_geometry, answer)) return false;
  const byte_view facts(answer);
  const uint32_t sector = facts.u32_at(bytes_per_sector_at);
  if (sector == 0 || sector > largest_sector_bytes) return false;
  geometry.bytes_per_sector = sector;
  geometry.total_size = facts.u64_at(disk_size_at);
  if (!large) {
    geometry.total_size =
        product(product(facts.u64_at(cylinders_at), sector),
                product(facts.u32_at(sectors_per_track_at), facts.u32_at(tracks_per_cylinder_at)));
  }
  return true;
}

/// The length of the partition that the device is, in bytes; 0 if it is none or does not tell.
uint64_t partition_length(open_device_file& device) {
  std::vector<uint8_t> answer;
  if (ask(device, plain_partition, answer)) return byte_view(answer).u64_at(plain_length_at);
  if (ask(device, large_partition, answer)) return byte_view(answer).u64_at(large_length_at);
  return 0;
}

/// True if a device of any kind can read into `buffer`: some devices need 4,096-byte alignment.
bool is_aligned(void* buffer) {
  constexpr size_t largest_demand = 4096;
  size_t room = 1;
  return std::align(largest_demand, 1, buffer, room) != nullptr;
}

class device_disk : public RAW_DISK_IO {
 public:
  device_disk(std::unique_ptr<open_device_file> device, const disk_geometry& geometry)
      : m_device(std::move(device)), m_geometry(geometry) {
    m_geometry.total_size = std::min(m_geometry.total_size, largest_disk);
  }

  bool read(void* buffer, uint32_t& size, uint64_t offset) override {
    const uint32_t wanted = size;
    size = 0;
    if (wanted == 0 || offset >= m_geometry.total_size) return false;
    const uint32_t sector = m_geometry.bytes_per_sector;
    const auto head = static_cast<uint32_t>(offset % sector);
    const uint64_t sectors = (uint64_t{wanted} + head + sector - 1) / sector;
    const uint64_t length = sectors * sector;
    if (length > UINT32_MAX) return false;
    auto count = static_cast<uint32_t>(length);
    if (length == wanted && is_aligned(buffer)) {
      if (!m_device->read(buffer, count, offset)) return false;
      size = std::min(count, wanted);
      return size != 0;
    }
    uni::memory_block block;  // of whole pages
    if (!block.allocate(count) || !m_device->read(block.data(), count, offset - head)) return false;
    const byte_view there = byte_view(block.data(), count).from(head).clip(0, wanted);
    if (there.empty()) return false;
    size = static_cast<uint32_t>(there.size());
    std::memcpy(buffer, there.data(), size);
    return true;
  }

  uint64_t size() const override { return m_geometry.total_size; }

 private:
  std::unique_ptr<open_device_file> m_device;
  disk_geometry m_geometry;
};

constexpr size_t longest_drive_path = 3;

std::string device_name(device_kind kind, const std::string& path) {
  if (kind == device_kind::physical_drive) return "\\\\.\\PhysicalDrive0";
  if (path.size() <= longest_drive_path && is_drive_letter(path[0])) {
    return std::string("\\\\.\\") + path[0] + ':';
  }
  // With a separator at its end it would be the root folder of the device.
  return path.substr(0, path.find_last_not_of('\\') + 1);
}

}  // namespace

std::unique_ptr<RAW_DISK_IO> open_device(device_kind kind, const std::string& path,
                                         const device_calls& calls) {
  if (path.empty() && kind != device_kind::physical_drive) return nullptr;
  auto device = calls.open(device_name(kind, path));
  if (device == nullptr) return nullptr;
  disk_geometry geometry;
  const bool may_lack_geometry = kind == device_kind::volume && path.size() > longest_drive_path;
  if (!get_geometry(*device, geometry) && !may_lack_geometry) return nullptr;
  if (kind != device_kind::physical_drive) {
    if (const uint64_t length = partition_length(*device); length != 0) {
      geometry.total_size = length;
    }
  }
  if (geometry.total_size == 0) geometry.total_size = device->size();
  return std::make_unique<device_disk>(std::move(device), geometry);
}

bool is_device_path(const std::string& path) {
  return path.starts_with("\\\\.\\") || path.starts_with("\\\\?\\");
}

}  // namespace ovrik
