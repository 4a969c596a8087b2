#include "sources/disk/retried_disk.h"

#include <utility>

#include "sources/host/source_reader.h"

namespace ovrik {

namespace {

class disk_bytes : public byte_source {
 public:
  explicit disk_bytes(std::unique_ptr<RAW_DISK_IO> disk) : m_disk(std::move(disk)) {}

  uint64_t size() const override { return m_disk->size(); }

  bool read_at(uint8_t* buffer, size_t& size, uint64_t offset) override {
    auto count = static_cast<uint32_t>(size);  // no disk is asked for more than 32 bits
    const bool read = m_disk->read(buffer, count, offset);
    size = count;
    return read;
  }

 private:
  std::unique_ptr<RAW_DISK_IO> m_disk;
};

class whole_disk : public RAW_DISK_IO {
 public:
  whole_disk(std::unique_ptr<RAW_DISK_IO> disk, const std::string& name, read_faults& faults)
      : m_stored_size(disk->stored_size()),
        m_reader(std::make_unique<disk_bytes>(std::move(disk)), name),
        m_faults(faults) {}

  bool read(void* buffer, uint32_t& size, uint64_t offset) override {
    size_t count = size;
    m_reader.read(static_cast<uint8_t*>(buffer), count, offset, m_faults);
    size = static_cast<uint32_t>(count);
    return count != 0;
  }

  uint64_t size() const override { return m_reader.size(); }
  uint64_t stored_size() const override { return m_stored_size; }

 private:
  uint64_t m_stored_size;
  source_reader m_reader;
  read_faults& m_faults;
};

}  // namespace

std::unique_ptr<RAW_DISK_IO> retried_disk(std::unique_ptr<RAW_DISK_IO> disk,
                                          const std::string& name, read_faults& faults) {
  if (disk == nullptr) return nullptr;
  return std::make_unique<whole_disk>(std::move(disk), name, faults);
}

}  // namespace ovrik
