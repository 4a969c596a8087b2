// Walks a cache into its entries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/byte_view.h"
#include "shim/shim_cache.h"
#include "shim/shim_walk.h"

namespace ovrik {

/// The entries of one cache, in the order of the walk. What is kept of an entry is its place; it is
/// read again when it is asked for, so that a cache of any size is in memory once. The bytes that
/// were parsed have to stay as long as entries are asked for.
class shim_cache_results {
 public:
  size_t size() const { return m_steps.size(); }
  bool empty() const { return m_steps.empty(); }

  /// The places of the entries.
  const std::vector<shim_step>& steps() const { return m_steps; }

  /// The layout of all valid entries; there while the results are not empty.
  const shim_layout_row& layout() const { return m_walk.layout(); }

  /// The entry at one of the `steps`.
  shim_cache_entry entry_at(const shim_step& step) const { return m_walk.entry_at(step); }

 private:
  friend bool parse_shim_cache(shim_cache_results& results, byte_view data, uint32_t slack_length,
                               bool raw_mode);

  shim_walk m_walk;
  std::vector<shim_step> m_steps;
};

/// Empties `results` and fills it with the entries of the cache in `data`, which may be of any
/// layout. `slack_length` says how many bytes at the end are slack behind the value's own data.
/// With `raw_mode` the invalid entries of the layouts 1 to 7 are kept too. True: a layout was
/// recognised and its header lies inside; damage then ends the walk or skips an entry, without a
/// word. False: `data` is no cache.
bool parse_shim_cache(shim_cache_results& results, byte_view data, uint32_t slack_length,
                      bool raw_mode);

}  // namespace ovrik
