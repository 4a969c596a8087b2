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

/// True if `bytes`, which reach to the page's end, begin with an entry of the layout. The time is
/// tested too: a page is looked at where an entry may begin, not where one has to.
bool is_entry(const shim_layout_row& row, byte_view bytes) {
  const bool has_form = row.family == shim_family::array ? is_array_entry(bytes, row)
                                                         : bytes.size() >= row.entry_bytes;
  return has_form && is_valid_time(bytes.u64_at(row.carving_time_at));
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

uint64_t tail_page_count(byte_view page) {
  const uint64_t cell_bytes = cell_size(page.from(bin_page::first_cell_at));
  const uint64_t pages = (cell_bytes + bin_page::first_cell_at) / chunk_page_bytes;
  return pages == 0 ? 0 : pages - 1;
}

std::optional<uint32_t> probe_page(const chunk_layout& layout, byte_view page) {
  if (layout.entry_places.empty()) return std::nullopt;
  const shim_layout_row& row = layout_facts(layout.layout);
  for (const uint32_t place : layout.entry_places) {
    if (is_entry(row, page.from(place))) return place;
  }
  return row.mark == carving_mark::entries_or_paths ? last_path(page) : std::nullopt;
}

page_survey survey_page(const chunk_layout& layout, byte_view page, uint32_t start) {
  constexpr uint32_t least_path_bytes = 16;
  const shim_layout_row& row = layout_facts(layout.layout);
  page_survey found;
  for (uint32_t at = start; at < chunk_page_bytes;) {
    const byte_view rest = page.from(at);
    if (row.family == shim_family::slots) {
      // Slots have nothing to tell them by; only headers among them are counted.
      if (rest.u32_at(0) == row.carving_magic) ++found.entry_count;
      at += row.entry_bytes;
      continue;
    }
    if (is_entry(row, rest)) {
      ++found.entry_count;
      found.path_offsets.push_back(rest.u32_at(row.path_offset_at));
      at += row.entry_bytes;
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
