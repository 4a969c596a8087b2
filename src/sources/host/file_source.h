// A file of the host as bytes that are read at offsets.
#pragma once

#include <memory>
#include <string>

#include "sources/host/byte_source.h"
#include "sources/host/fileio.h"

namespace ovrik {

class file_source : public byte_source {
 public:
  /// Opens the file at `path` (UTF-8). False: as `uni::fileio::open_read`.
  bool open(const std::string& path) { return m_file.open_read(path); }

  uint64_t size() const override { return m_file.length(); }

  bool read_at(uint8_t* buffer, size_t& size, uint64_t offset) override {
    return m_file.read_at(buffer, size, offset);
  }

 private:
  uni::fileio m_file;
};

/// Opens the file at `path`. Nothing: it does not open.
inline std::unique_ptr<byte_source> open_file_source(const std::string& path) {
  auto file = std::make_unique<file_source>();
  if (!file->open(path)) return nullptr;
  return file;
}

}  // namespace ovrik
