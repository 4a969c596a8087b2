// The caches whose entries have a fixed length: Windows XP to Windows 7.
#include <algorithm>
#include <array>

#include "shim/shim_layouts.h"
#include "shim/shim_walk.h"

namespace ovrik {

namespace {

/// The position of each slot in the most-recently-used list of a Windows XP cache; the first one
/// where a slot stands there twice, -1 for a slot that it lacks.
int32_t xp_order_of(byte_view data, uint32_t entry_number) {
  for (uint32_t position = 0; position < xp_cache::order_list_length; ++position) {
    if (data.u32_at(xp_cache::order_list_at + 4 * position) == entry_number) {
      return static_cast<int32_t>(position);
    }
  }
  return -1;
}

/// Moves the walk past an entry that failed its tests: in raw mode its bytes are kept, whatever
/// they are; otherwise it has no row. False: the walk ends.
bool pass_invalid_entry(shim_walk& walk, shim_cache_entry& entry, uint32_t entry_bytes,
                        shim_layout last_layout) {
  if (walk.raw_mode) {
    entry.layout = last_layout;
    entry.raw_bytes = walk.rest().clip(0, entry_bytes).copy();
    walk.store(std::move(entry));
  } else if (walk.running_number() > walk.found.entry_count) {
    return false;
  }
  walk.offset += entry_bytes;
  return true;
}

/// Fills `entry` from the bytes of an array entry. False: the walk has to end.
bool read_array_entry(shim_walk& walk, byte_view bytes, const array_layout& layout,
                      shim_cache_entry& entry) {
  entry.valid = true;
  entry.layout = layout.layout;
  entry.path_offset = offset_field(bytes, layout, layout.path_offset_at);
  entry.modified_time = bytes.u64_at(layout.modified_at);
  if (layout.file_size_at != absent) entry.file_size = bytes.u64_at(layout.file_size_at);
  if (layout.flags_at != absent) {
    entry.flags1 = bytes.u32_at(layout.flags_at);
    entry.flags2 = bytes.u32_at(layout.flags_at + 4);
  }
  if (layout.data_at != absent) {
    entry.data_size = offset_field(bytes, layout, layout.data_at);
    entry.data_offset = offset_field(bytes, layout, layout.data_at + layout.offset_width);
  }
  return walk.read_path(entry, walk.data.clip(entry.path_offset, bytes.u16_at(0)));
}

}  // namespace

void walk_xp_cache(shim_walk& walk) {
  shim_layout last_layout = shim_layout::none;
  for (byte_view bytes = walk.rest(); !bytes.empty(); bytes = walk.rest()) {
    shim_cache_entry entry = walk.next_entry();
    const bool valid = bytes.size() >= xp_cache::entry_bytes &&
                       bytes.u64_at(xp_cache::update_time_at) != 0 &&
                       walk.running_number() <= walk.found.entry_count;
    if (!valid) {
      if (!pass_invalid_entry(walk, entry, xp_cache::entry_bytes, last_layout)) return;
      continue;
    }
    entry.valid = true;
    entry.layout = last_layout = shim_layout::xp;
    entry.modified_time = bytes.u64_at(xp_cache::modified_at);
    entry.file_size = bytes.u64_at(xp_cache::file_size_at);
    entry.update_time = bytes.u64_at(xp_cache::update_time_at);
    entry.order = xp_order_of(walk.data, entry.entry_number);
    if (!walk.read_path(entry, bytes.clip(xp_cache::path_at, xp_cache::path_bytes))) return;
    if (walk.raw_mode) entry.raw_bytes = bytes.clip(0, xp_cache::entry_bytes).copy();
    walk.store(std::move(entry));
    walk.offset += xp_cache::entry_bytes;
  }
}

void walk_array_cache(shim_walk& walk) {
  const array_layout& layout = array_layout_of(walk.found.layout);
  // The lowest place that a path was found at: entries that reach it have run into the paths.
  int64_t path_limit = static_cast<int64_t>(walk.data.size());
  shim_layout last_layout = shim_layout::none;
  for (byte_view bytes = walk.rest(); !bytes.empty(); bytes = walk.rest()) {
    if (static_cast<int64_t>(walk.offset) > path_limit) return;
    shim_cache_entry entry = walk.next_entry();
    if (!is_array_entry(bytes, layout) || walk.running_number() > walk.found.entry_count) {
      // Stale entries of layout 7 are only stepped over once a valid one has shown the way.
      const bool unknown_step = walk.raw_mode && layout.layout == shim_layout::win7_x64 &&
                                last_layout == shim_layout::none;
      if (unknown_step || !pass_invalid_entry(walk, entry, layout.entry_bytes, last_layout)) return;
      continue;
    }
    if (!read_array_entry(walk, bytes, layout, entry)) return;
    last_layout = layout.layout;
    // Only the low half of a path offset takes part here, as a signed number.
    const int64_t path_place = static_cast<int32_t>(static_cast<uint32_t>(entry.path_offset));
    path_limit = std::min(path_limit, path_place);
    if (walk.raw_mode) entry.raw_bytes = bytes.clip(0, layout.entry_bytes).copy();
    walk.store(std::move(entry));
    walk.offset += layout.entry_bytes;
  }
}

}  // namespace ovrik
