#include "sources/disk/image_disk.h"

#include "sources/disk/raw_device.h"
#include "sources/host/fileio.h"

namespace ovrik {

namespace {

class image_disk : public RAW_DISK_IO {
 public:
  bool open(const std::string& path) {
    if (!m_file.open_read(path)) return false;
    m_total_size = m_file.length();
    return true;
  }

  bool read(void* buffer, uint32_t& size, uint64_t offset) override {
    size_t count = size;
    const bool read = m_file.read_at(buffer, count, offset);
    size = static_cast<uint32_t>(count);
    return read && count != 0;
  }

  uint64_t size() const override { return m_total_size; }

 private:
  uni::fileio m_file;
  uint64_t m_total_size = 0;
};

}  // namespace

std::unique_ptr<RAW_DISK_IO> open_image(const std::string& path) {
  auto disk = std::make_unique<image_disk>();
  if (!disk->open(path)) return nullptr;
  // A device opens like a file, but has no length as one.
  if (is_device_path(path) && disk->size() == 0) return open_device(device_kind::volume, path);
  return disk;
}

}  // namespace ovrik
