// Memory for the bytes of a whole source.
#pragma once

#include <cstddef>
#include <cstdint>

namespace uni {

/// An owned block of bytes for one large read: its pages are asked for at once, and large ones
/// where the system has them, because one fault for each small page costs more than the read
/// itself. Starts out as zeros.
class memory_block {
 public:
  memory_block() = default;
  ~memory_block();
  memory_block(memory_block&& other) noexcept;
  memory_block& operator=(memory_block&&) = delete;

  /// Gets `size` bytes, more than 0, for a block that has none yet. False: there is no memory.
  bool allocate(size_t size);

  /// Forgets what lies behind the first `size` bytes, at most all.
  void cut(size_t size) { m_size = size; }

  uint8_t* data() { return m_data; }
  const uint8_t* data() const { return m_data; }
  size_t size() const { return m_size; }

 private:
  uint8_t* m_data = nullptr;
  size_t m_size = 0;
  size_t m_capacity = 0;
};

}  // namespace uni
