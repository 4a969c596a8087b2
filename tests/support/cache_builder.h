// Composes a shim cache of any layout byte by byte, as Windows writes it.
//
// The array layouts 2 to 7 put their strings behind the array, the first entry's string last,
// so that a path offset never rises along the array; the data blocks of layouts 6 and 7 stand
// between the array and the strings. Layout 1 always has 96 slots. The others are a chain of
// entries with a signature, behind a header (10, 13, 14) or without one (9, 12).

#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/bytes.h"

namespace test_support {

/// One program. The defaults pass the validity tests of every layout.
struct cache_entry {
  std::u16string path;
  uint64_t modified = 0x01D8A0B0C0D0E0F0;
  uint64_t update = 0x01D8A0B0C0D0E0F1;  ///< layout 1
  uint64_t file_size = 0x12345;          ///< layouts 1 to 3
  uint32_t flags1 = 7;                   ///< layouts 4 to 7, 9 and 10
  uint32_t flags2 = 0x100;               ///< the same and 12
  bytes data = {};                       ///< layouts 6 and up
  bool second_form = false;              ///< layout 10: the path stands two bytes later
  uint32_t tag = 0x5EED0001;             ///< layouts 9 and up
};

class cache_builder {
 public:
  explicit cache_builder(int layout) : m_layout(layout) {}

  cache_builder& entry(cache_entry added) {
    m_entries.push_back(std::move(added));
    return *this;
  }
  cache_builder& entry(std::u16string path, uint64_t modified) {
    return entry({.path = std::move(path), .modified = modified});
  }
  /// Layout 1: the start of the most-recently-used list; otherwise 0, 1, 2 and so on.
  cache_builder& order(std::vector<uint32_t> indexes) {
    m_order = std::move(indexes);
    return *this;
  }

  std::vector<uint8_t> bytes() const;

  /// Offset of entry (or slot) `index` in the composed cache.
  size_t entry_at(size_t index) const;

  std::optional<uint32_t> stated_count;  ///< in the header; otherwise the number of entries

 private:
  void compose_xp(std::vector<uint8_t>& cache) const;
  void compose_array(std::vector<uint8_t>& cache) const;
  std::vector<uint8_t> chain_entry(const cache_entry& entry) const;

  int m_layout;
  std::vector<cache_entry> m_entries;
  std::vector<uint32_t> m_order;
};

}  // namespace test_support
