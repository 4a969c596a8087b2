// The walks over the families of layouts, behind `parse_shim_cache`.
#pragma once

#include <cstdint>
#include <utility>

#include "base/byte_view.h"
#include "shim/shim_cache.h"
#include "shim/shim_detect.h"
#include "shim/shim_layouts.h"

namespace ovrik {

/// What the walks share: the buffer, the place of the step in hand and the entries kept so far.
class shim_walk {
 public:
  shim_walk(shim_cache_results& results, byte_view buffer, const detected_shim& detected,
            uint32_t slack_length, bool keep_invalid)
      : data(buffer),
        layout(layout_facts(detected.layout)),
        entry_count(detected.entry_count),
        raw_mode(keep_invalid),
        offset(layout.header_bytes),
        m_results(results),
        m_slack_length(slack_length) {}

  const byte_view data;
  const shim_layout_row& layout;
  const uint32_t entry_count;  ///< as the header states it
  const bool raw_mode;
  uint64_t offset;  ///< of the step, from the buffer's start; moves on with each step

  /// The buffer from the step's place to its end; empty when the walk has come to its end, which
  /// it does at the latest behind 31 bits.
  byte_view rest() const { return offset >> 31 == 0 ? data.from(offset) : byte_view(); }

  /// A fresh entry for the step at `offset`, with the next running number.
  shim_cache_entry next_entry();

  /// Number of entries that `next_entry` has made.
  uint32_t running_number() const { return m_running_number; }

  /// Fills the entry's path from the UTF-16LE text in `text`. False: the paths of the cache are
  /// together longer than any real cache could hold, because they overlap; the walk has to end.
  bool read_path(shim_cache_entry& entry, byte_view text);

  /// Adds the entry of the step to the results.
  void store(shim_cache_entry&& entry) { m_results.push_back(std::move(entry)); }

 private:
  shim_cache_results& m_results;
  uint32_t m_slack_length;
  uint32_t m_running_number = 0;
  uint64_t m_path_bytes = 0;
};

/// The walk over the family `slots`.
void walk_slot_cache(shim_walk& walk);

/// The walk over the family `array`.
void walk_array_cache(shim_walk& walk);

/// The walk over the family `chain`.
void walk_chain_cache(shim_walk& walk);

}  // namespace ovrik
