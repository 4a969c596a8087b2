// The block reader under every source that is not a plain hive file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace ovrik {

/// A disk, volume or image, read by byte offset. Holds no cache; all access is read-only.
class RAW_DISK_IO {
 public:
  RAW_DISK_IO() = default;
  virtual ~RAW_DISK_IO() = default;
  RAW_DISK_IO(const RAW_DISK_IO&) = delete;
  RAW_DISK_IO& operator=(const RAW_DISK_IO&) = delete;

  /// Reads up to `size` bytes at `offset` into `buffer` and sets `size` to the count that came,
  /// which is short at the end. False: `size` is 0, `offset` lies at or past the end, or nothing
  /// could be read there.
  virtual bool read(void* buffer, uint32_t& size, uint64_t offset) = 0;

  /// Bytes that may be read; no read starts at or beyond.
  virtual uint64_t size() const = 0;

  /// Bytes that the source really holds: fewer than `size` where space is given out as it is used.
  virtual uint64_t stored_size() const { return size(); }
};

/// Opens an image file or a disk (UTF-8 path). Nothing: it does not open.
std::unique_ptr<RAW_DISK_IO> open_image(const std::string& path);

}  // namespace ovrik
