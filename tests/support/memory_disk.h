// A disk in memory, parts of which cannot be read.

#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>
#include <utility>
#include <vector>

#include "sources/disk/raw_disk_io.h"

namespace test_support {

class memory_disk : public ovrik::RAW_DISK_IO {
 public:
  /// Reads stop in front of a sector (of 512 bytes) that is in `bad`, and fail if they begin there.
  explicit memory_disk(std::vector<uint8_t> content, std::set<uint64_t> bad = {})
      : m_content(std::move(content)), m_bad(std::move(bad)) {}

  bool read(void* buffer, uint32_t& size, uint64_t offset) override {
    if (offset >= m_content.size()) return false;
    uint64_t end = std::min<uint64_t>(m_content.size(), offset + size);
    const auto bad = m_bad.lower_bound(offset / 512);
    if (bad != m_bad.end()) end = std::clamp(*bad * 512, offset, end);
    size = static_cast<uint32_t>(end - offset);
    std::memcpy(buffer, m_content.data() + offset, size);
    return size != 0;
  }

  uint64_t size() const override { return m_content.size(); }

 private:
  std::vector<uint8_t> m_content;
  std::set<uint64_t> m_bad;
};

}  // namespace test_support
