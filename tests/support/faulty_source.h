// Bytes in memory, parts of which cannot be read.

#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "sources/host/byte_source.h"
#include "support/bytes.h"

namespace test_support {

/// What a faulty source holds, and how it fails.
struct fault_plan {
  bytes content;
  std::vector<std::pair<uint64_t, uint64_t>> bad = {};  ///< where each stretch begins and ends
  bool all_or_nothing = false;         ///< nothing comes of a read that touches one of them
  uint64_t shrinks_to = ~uint64_t{0};  ///< the size from the first read on
};

class faulty_source : public ovrik::byte_source {
 public:
  /// Both are in use for as long as the source is; `calls` counts the reads.
  faulty_source(const fault_plan& plan, size_t& calls) : m_plan(plan), m_calls(calls) {}

  uint64_t size() const override {
    return m_calls == 0 ? m_plan.content.size()
                        : std::min<uint64_t>(m_plan.content.size(), m_plan.shrinks_to);
  }

  bool read_at(uint8_t* buffer, size_t& size, uint64_t offset) override {
    ++m_calls;
    uint64_t end = std::min<uint64_t>(this->size(), offset + size);
    bool failed = false;
    for (const auto& [from, to] : m_plan.bad) {
      if (to <= offset || from >= end) continue;
      end = m_plan.all_or_nothing ? offset : std::max(from, offset);
      failed = true;
    }
    size = end > offset ? static_cast<size_t>(end - offset) : 0;
    std::memcpy(buffer, m_plan.content.data() + offset * (size != 0), size);
    return !failed && size != 0;
  }

 private:
  const fault_plan& m_plan;
  size_t& m_calls;
};

}  // namespace test_support
