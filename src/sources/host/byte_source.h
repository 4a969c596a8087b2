// Bytes that are read at offsets, wherever they lie.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovrik {

/// A file of the host, a file inside a volume or any other run of bytes; evidence, so only read.
class byte_source {
 public:
  byte_source() = default;
  virtual ~byte_source() = default;
  byte_source(const byte_source&) = delete;
  byte_source& operator=(const byte_source&) = delete;

  /// Size in bytes.
  virtual uint64_t size() const = 0;

  /// Reads up to `size` bytes at `offset` into `buffer` and sets `size` to the count that came,
  /// which is short at the end. False: what follows the first `size` bytes cannot be read.
  virtual bool read_at(uint8_t* buffer, size_t& size, uint64_t offset) = 0;
};

}  // namespace ovrik
