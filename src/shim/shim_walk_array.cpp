// The caches whose entries have a fixed length: Windows XP to Windows 7.
#include <algorithm>
#include <array>

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

/// Moves the walk past an entry that failed its tests: in raw mode it is kept, whatever it is;
/// otherwise it has no row. False: the walk ends.
bool pass_invalid_entry(shim_walk& walk, shim_cache_entry& entry, shim_layout last_layout) {
  if (walk.raw_mode) {
    entry.layout = last_layout;
    walk.store(std::move(entry));
  } else if (walk.running_number() > walk.entry_count) {
    return false;
  }
  walk.offset += walk.layout.entry_bytes;
  return true;
}

/// Fills `entry` from the bytes of an array entry. False: the walk has to end.
bool read_array_entry(shim_walk& walk, byte_view bytes, shim_cache_entry& entry) {
  const shim_layout_row& row = walk.layout;
  entry.valid = true;
  entry.layout = row.layout;
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
  return walk.read_path(entry, walk.data.clip(entry.path_offset, path_length));
}

}  // namespace

void walk_slot_cache(shim_walk& walk) {
  const shim_layout_row& row = walk.layout;
  shim_layout last_layout = shim_layout::none;
  for (byte_view bytes = walk.rest(); !bytes.empty(); bytes = walk.rest()) {
    shim_cache_entry entry = walk.next_entry();
    const bool valid = bytes.size() >= row.entry_bytes && bytes.u64_at(row.update_time_at) != 0 &&
                       walk.running_number() <= walk.entry_count;
    if (!valid) {
      if (!pass_invalid_entry(walk, entry, last_layout)) return;
      continue;
    }
    entry.valid = true;
    entry.layout = last_layout = row.layout;
    entry.modified_time = bytes.u64_at(row.modified_at);
    entry.file_size = bytes.u64_at(row.file_size_at);
    entry.update_time = bytes.u64_at(row.update_time_at);
    entry.order = use_order_of(walk.data, entry.entry_number);
    if (!walk.read_path(entry, bytes.clip(slot_cache::path_at, slot_cache::path_bytes))) return;
    walk.store(std::move(entry));
    walk.offset += row.entry_bytes;
  }
}

void walk_array_cache(shim_walk& walk) {
  const shim_layout_row& row = walk.layout;
  // The lowest place that a path was found at: entries that reach it have run into the paths.
  int64_t path_limit = static_cast<int64_t>(walk.data.size());
  shim_layout last_layout = shim_layout::none;
  for (byte_view bytes = walk.rest(); !bytes.empty(); bytes = walk.rest()) {
    if (static_cast<int64_t>(walk.offset) > path_limit) return;
    shim_cache_entry entry = walk.next_entry();
    if (!is_array_entry(bytes, row) || walk.running_number() > walk.entry_count) {
      const bool unknown_step =
          walk.raw_mode && row.stale_after_valid && last_layout == shim_layout::none;
      if (unknown_step || !pass_invalid_entry(walk, entry, last_layout)) return;
      continue;
    }
    if (!read_array_entry(walk, bytes, entry)) return;
    last_layout = row.layout;
    // Only the low half of a path offset takes part here, as a signed number.
    const int64_t path_place = static_cast<int32_t>(static_cast<uint32_t>(entry.path_offset));
    path_limit = std::min(path_limit, path_place);
    walk.store(std::move(entry));
    walk.offset += row.entry_bytes;
  }
}

}  // namespace ovrik
