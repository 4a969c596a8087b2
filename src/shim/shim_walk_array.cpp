// The caches whose entries have a fixed length: Windows XP to Windows 7.
#include <algorithm>

#include "shim/shim_walk.h"

namespace ovrik {

namespace {

/// The position of each slot in the most-recently-used list of a Windows XP cache; the first one
/// where a slot stands there twice, -1 for a slot that it lacks.
int32_t use_order_of(byte_view data, uint32_t entry_number) {
  for (uint32_t position = 0; position < slot_cache::order_list_length; ++position) {
    if (data.u32_at(slot_cache::order_list_at + 4 * position) == entry_number) {
      return static_cast<int32_t>(position);
    }
  }
  return -1;
}

/// Passes an entry that failed its tests: in raw mode it is kept, whatever it is; otherwise it has
/// no row.
step_outcome pass_invalid_entry(shim_walk& walk, shim_cache_entry& entry) {
  if (!walk.raw_mode() && walk.is_behind_count()) return step_outcome::ended;
  walk.move_by(walk.layout().entry_bytes);
  if (!walk.raw_mode()) return step_outcome::skipped;
  if (walk.any_valid()) entry.layout = walk.layout().layout;
  return step_outcome::entry;
}

/// Fills `entry` from the bytes of an array entry. False: the walk has to end.
bool read_array_entry(shim_walk& walk, byte_view bytes, shim_cache_entry& entry) {
  const shim_layout_row& row = walk.layout();
  entry.path_offset = offset_field(bytes, row, row.path_offset_at);
  entry.modified_time = bytes.u64_at(row.modified_at);
  if (row.file_size_at != absent) entry.file_size = bytes.u64_at(row.file_size_at);
  if (row.flags1_at != absent) entry.flags1 = bytes.u32_at(row.flags1_at);
  if (row.flags2_at != absent) entry.flags2 = bytes.u32_at(row.flags2_at);
  if (row.data_at != absent) {
    entry.data_size = offset_field(bytes, row, row.data_at);
    entry.data_offset = offset_field(bytes, row, row.data_at + row.offset_width);
  }
  const uint32_t path_length = bytes.u16_at(array_entry::path_length_at);
  return walk.take_path(entry, walk.data().clip(entry.path_offset, path_length));
}

}  // namespace

step_outcome step_to_slot(shim_walk& walk, shim_cache_entry& entry) {
  const byte_view bytes = walk.rest();
  const shim_layout_row& row = walk.layout();
  const bool valid = bytes.size() >= row.entry_bytes && bytes.u64_at(row.update_time_at) != 0 &&
                     !walk.is_behind_count();
  if (!valid) return pass_invalid_entry(walk, entry);
  entry.modified_time = bytes.u64_at(row.modified_at);
  entry.file_size = bytes.u64_at(row.file_size_at);
  entry.update_time = bytes.u64_at(row.update_time_at);
  entry.order = use_order_of(walk.data(), entry.entry_number);
  if (!walk.take_path(entry, bytes.clip(slot_cache::path_at, slot_cache::path_bytes))) {
    return step_outcome::ended;
  }
  walk.move_by(row.entry_bytes);
  return step_outcome::entry;
}

step_outcome step_in_array(shim_walk& walk, shim_cache_entry& entry) {
  const byte_view bytes = walk.rest();
  const shim_layout_row& row = walk.layout();
  if (static_cast<int64_t>(walk.offset()) > walk.path_limit) return step_outcome::ended;
  if (!is_array_entry(bytes, row) || walk.is_behind_count()) {
    const bool unknown_step = walk.raw_mode() && row.stale_after_valid && !walk.any_valid();
    return unknown_step ? step_outcome::ended : pass_invalid_entry(walk, entry);
  }
  if (!read_array_entry(walk, bytes, entry)) return step_outcome::ended;
  // Only the low half of a path offset takes part here, as a signed number.
  const int64_t path_place = static_cast<int32_t>(static_cast<uint32_t>(entry.path_offset));
  walk.path_limit = std::min(walk.path_limit, path_place);
  walk.move_by(row.entry_bytes);
  return step_outcome::entry;
}

}  // namespace ovrik
