#include <utility>

#include "base/windows_api_win32.h"
#include "sources/host/memory_block.h"

namespace uni {

memory_block::~memory_block() {
  if (m_data != nullptr) VirtualFree(m_data, 0, MEM_RELEASE);
}

memory_block::memory_block(memory_block&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)),
      m_size(std::exchange(other.m_size, 0)),
      m_capacity(std::exchange(other.m_capacity, 0)) {}

bool memory_block::allocate(size_t size) {
  m_data =
      static_cast<uint8_t*>(VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  if (m_data == nullptr) return false;
  m_size = size;
  m_capacity = size;
  return true;
}

}  // namespace uni
