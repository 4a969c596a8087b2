// The walks over the families of layouts, behind `parse_shim_cache`.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "base/byte_view.h"
#include "shim/shim_cache.h"
#include "shim/shim_detect.h"
#include "shim/shim_layouts.h"

namespace ovrik {

/// Where a walk stood when it made an entry: enough to make the same entry again.
struct shim_step {
  uint32_t offset = 0;  ///< from the buffer's start, in bytes
  uint32_t number = 0;  ///< of the step, from 0
};

/// What a step of a walk came to.
enum class step_outcome {
  entry,    ///< an entry is there
  skipped,  ///< none is, and the walk goes on
  ended,    ///< the walk is at its end
};

/// A walk from entry to entry. Reads the buffer, which has to stay, and keeps nothing of it.
class shim_walk {
 public:
  shim_walk() = default;
  shim_walk(byte_view buffer, const detected_shim& detected, uint32_t slack_length, bool raw_mode);

  /// Makes the next entry. False: the walk has come to its end.
  bool next(shim_cache_entry& entry);

  /// Makes the entry again that the walk made at `step`.
  shim_cache_entry entry_at(const shim_step& step) const;

  // For the steps of the families.

  byte_view data() const { return m_data; }
  const shim_layout_row& layout() const { return *m_layout; }
  bool raw_mode() const { return m_raw_mode; }

  /// The buffer from the step's place to its end; empty when the walk has come to its end, which
  /// it does at the latest behind 31 bits.
  byte_view rest() const { return m_offset >> 31 == 0 ? m_data.from(m_offset) : byte_view(); }

  uint64_t offset() const { return m_offset; }
  void move_by(uint64_t bytes) { m_offset += bytes; }

  /// True if the step in hand, counted from 1, is beyond the number of entries in the header.
  bool is_behind_count() const { return m_running_number > m_entry_count; }

  /// True once an entry was valid.
  bool any_valid() const { return m_any_valid; }

  /// Notes that the entry is valid and where its path lies. False: the paths of the cache are
  /// together longer than any real cache could hold, because they overlap; the walk has to end.
  bool take_path(shim_cache_entry& entry, byte_view path);

  /// The four bytes that each entry of a chain begins with.
  std::string_view signature() const { return {m_signature.data(), m_signature.size()}; }

  /// The lowest place that a path was found at: entries that reach it have run into the paths.
  int64_t path_limit = 0;

 private:
  byte_view m_data;
  const shim_layout_row* m_layout = nullptr;
  uint32_t m_entry_count = 0;  // as the header states it
  uint32_t m_slack_length = 0;
  bool m_raw_mode = false;
  std::array<char, 4> m_signature{};

  uint64_t m_offset = 0;  // of the step, from the buffer's start
  uint32_t m_running_number = 0;
  uint64_t m_path_bytes = 0;
  bool m_any_valid = false;
};

/// The step of the family `slots`, from the walk's place on.
step_outcome step_to_slot(shim_walk& walk, shim_cache_entry& entry);

/// The step of the family `array`.
step_outcome step_in_array(shim_walk& walk, shim_cache_entry& entry);

/// The step of the family `chain`.
step_outcome step_along_chain(shim_walk& walk, shim_cache_entry& entry);

}  // namespace ovrik
