// Reading by byte offset: what every source is read through that is not a plain hive file.
#pragma once

#include <cstdint>

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

  /// Size in bytes. No read may begin at or behind it.
  virtual uint64_t size() const = 0;

  /// Bytes that the source really stores: fewer than `size` where it leaves out zeros. More data
  /// than this cannot be in it, whatever a volume on it claims.
  virtual uint64_t stored_size() const { return size(); }
};

}  // namespace ovrik
