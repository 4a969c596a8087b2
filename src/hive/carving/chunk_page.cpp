#include "hive/carving/chunk_page.h"

#include <algorithm>
#include <string_view>

#include "output/lv_time.h"
#include "shim/shim_layouts.h"

namespace ovrik {

namespace {

/// "\??\" in UTF-16LE, the start of the paths in a cache.
constexpr std::string_view path_start("\\\0?\0?\0\\\0", 8);

bool is_valid_time(uint64_t filetime) {
  time_value value;
  return decode_filetime(value, filetime);
}

/// True if `bytes`, which reach to the page's end, begin with an entry of `layout`, 2 to 7. The
/// time is tested too: a page is looked at where an entry may begin, not where one has to.
bool is_entry(shim_layout layout, byte_view bytes) {
  const array_layout& fields = array_layout_of(layout);
  return is_array_entry(bytes, fields) && is_valid_time(bytes.u64_at(fields.modified_at));
}

bool is_xp_entry(byte_view bytes) {
  return bytes.size() >= xp_cache::entry_bytes &&
         is_valid_time(bytes.u64_at(xp_cache::update_time_at));
}

/// The last path that begins within the last 256 bytes of the page, save the very last 8.
std::optional<uint32_t> last_path(byte_view page) {
  constexpr uint32_t first_place = 3840;
  constexpr uint32_t last_place = 4087;
  const byte_view searched = page.clip(0, last_place + path_start.size());
  std::optional<uint32_t> last;
  for (auto at = searched.find(path_start, first_place); at;
       at = searched.find(path_start, *at + 1)) {
    last = static_cast<uint32_t>(*at);
  }
  return last;
}

/// Length in bytes of the UTF-16 text in `bytes` in front of a NUL unit or the last whole unit.
uint32_t text_bytes(byte_view bytes) {
  uint32_t length = 0;
  while (bytes.u16_at(length) != 0) length += 2;
  return length;
}

}  // namespace

bool is_bin_page(byte_view page) { return page.text_at(0, "hbin"); }

uint64_t first_cell_bytes(byte_view page) {
  const int64_t size = static_cast<int32_t>(page.u32_at(bin_page::first_cell_at));
  return static_cast<uint64_t>(size < 0 ? -size : size);
}

uint64_t tail_page_count(byte_view page) {
  const uint64_t pages = (first_cell_bytes(page) + bin_page::first_cell_at) / chunk_page_bytes;
  return pages == 0 ? 0 : pages - 1;
}

std::optional<uint32_t> probe_page(const chunk_layout& layout, byte_view page) {
  if (layout.entry_places.empty()) return std::nullopt;
  const bool xp = layout.layout == shim_layout::xp;
  for (const uint32_t place : layout.entry_places) {
    const byte_view rest = page.from(place);
    if (xp ? is_xp_entry(rest) : is_entry(layout.layout, rest)) return place;
  }
  return layout.hunts_paths ? last_path(page) : std::nullopt;
}

page_survey survey_page(const chunk_layout& layout, byte_view page, uint32_t start) {
  constexpr uint32_t least_path_bytes = 16;
  page_survey found;
  for (uint32_t at = start; at < chunk_page_bytes;) {
    const byte_view rest = page.from(at);
    if (layout.layout == shim_layout::xp) {
      // Slots have nothing to tell them by; only headers among them are counted.
      if (rest.u32_at(0) == layout.magic) ++found.entry_count;
      at += layout.entry_bytes;
      continue;
    }
    if (is_entry(layout.layout, rest)) {
      ++found.entry_count;
      found.path_offsets.push_back(rest.u32_at(array_layout_of(layout.layout).path_offset_at));
      at += layout.entry_bytes;
      continue;
    }
    if (rest.size() < least_path_bytes) break;
    const auto path_at = page.find(path_start, at);
    if (!path_at) break;
    found.path_places.push_back(static_cast<uint32_t>(*path_at));
    at = static_cast<uint32_t>(*path_at) + text_bytes(page.from(*path_at));
  }
  std::sort(found.path_offsets.begin(), found.path_offsets.end());
  found.path_offsets.erase(std::unique(found.path_offsets.begin(), found.path_offsets.end()),
                           found.path_offsets.end());
  return found;
}

}  // namespace ovrik
