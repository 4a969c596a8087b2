// What reading one hive may cost, whatever its lists claim.
#pragma once

#include <algorithm>
#include <cstdint>

namespace ovrik {

/// Counts what one run over a hive visits. In a sound hive every cell is named once, and a run goes
/// through each list at most twice, so that it never comes near the bounds. Lists that name the
/// same cells over and over, or overlap one another, come to them and end there.
class read_allowance {
 public:
  explicit read_allowance(uint64_t hive_bytes)
      : m_steps_left(4 * (hive_bytes / least_entry_bytes)),
        m_entries_left(4 * (hive_bytes / least_key_bytes)),
        m_value_cells_left(2 * (hive_bytes / least_value_bytes)),
        m_bytes_left(hive_bytes) {}

  /// One entry of a list of keys or of sublists. False, here and below: there are no more.
  bool take_step() { return take(m_steps_left); }

  /// The look at the cell that such an entry names.
  bool take_entry() { return take(m_entries_left); }

  /// One entry of a list of values or of the segments of a value.
  bool take_value_cell() { return take(m_value_cells_left); }

  /// `count` bytes of data. What crosses the bound is still given, so that one value of which only
  /// the size is damaged does not cost the one behind it.
  bool take_bytes(uint64_t count) {
    if (count == 0) return true;
    if (m_bytes_left == 0) return used_up();
    m_bytes_left -= std::min(count, m_bytes_left);
    return true;
  }

  /// True if something was not read for want of allowance.
  bool exceeded() const { return m_exceeded; }

 private:
  static constexpr uint32_t least_entry_bytes = 4;   // of a list
  static constexpr uint32_t least_key_bytes = 80;    // of an nk cell
  static constexpr uint32_t least_value_bytes = 24;  // of a vk cell

  bool take(uint64_t& left) {
    if (left == 0) return used_up();
    --left;
    return true;
  }

  bool used_up() {
    m_exceeded = true;
    return false;
  }

  uint64_t m_steps_left;
  uint64_t m_entries_left;
  uint64_t m_value_cells_left;
  uint64_t m_bytes_left;
  bool m_exceeded = false;
};

}  // namespace ovrik
