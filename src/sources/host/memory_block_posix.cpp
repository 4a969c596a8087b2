#include <sys/mman.h>

#include <utility>

#include "sources/host/memory_block.h"

namespace uni {

memory_block::~memory_block() {
  if (m_data != nullptr) munmap(m_data, m_capacity);
}

memory_block::memory_block(memory_block&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)),
      m_size(std::exchange(other.m_size, 0)),
      m_capacity(std::exchange(other.m_capacity, 0)) {}

bool memory_block::allocate(size_t size) {
  void* pages = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) return false;
  // Two hints: use large pages, and provide all pages at once. A system that refuses them only
  // takes longer.
  madvise(pages, size, MADV_HUGEPAGE);
  madvise(pages, size, MADV_POPULATE_WRITE);
  m_data = static_cast<uint8_t*>(pages);
  m_size = size;
  m_capacity = size;
  return true;
}

}  // namespace uni
