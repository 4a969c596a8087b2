#include "hive/carving/chunk_layouts.h"

#include <set>

#include "shim/shim_layouts.h"

namespace ovrik {

namespace {

/// Follows entries of `entry_bytes` through eight segments of four pages each. Numbers wrap at 32
/// bits. The first entry is taken to stand behind a header of 128 bytes in every layout.
std::vector<uint16_t> entry_places_of(uint32_t entry_bytes) {
  constexpr uint32_t segments = 8;
  constexpr uint32_t tail_pages = 3;
  constexpr uint32_t first_place = bin_page::data_at + 128;
  std::set<uint16_t> places;
  uint32_t segment_start = 0;
  uint32_t page_end = 0;
  const auto keep = [&](uint32_t place) {
    places.insert(static_cast<uint16_t>(place % chunk_page_bytes));
    page_end += chunk_page_bytes;
  };
  for (uint32_t segment = 0; segment < segments; ++segment) {
    uint32_t place = segment_start + first_place;
    if (segment != 0) {
      const uint32_t data = segment_start + bin_page::data_at;
      place = page_end - (page_end - data) % entry_bytes + entry_bytes;
      while (place % chunk_page_bytes < bin_page::data_at) place += entry_bytes;
    }
    keep(place);
    for (uint32_t tail = 0; tail < tail_pages; ++tail) {
      place = page_end - (page_end - place) % entry_bytes + entry_bytes;
      while (place % chunk_page_bytes > entry_bytes) place -= entry_bytes;
      keep(place);
    }
    segment_start = place + 4;
  }
  return {places.begin(), places.end()};
}

}  // namespace

std::optional<chunk_layout> chunk_layout_of(shim_layout layout) {
  const shim_layout_row& row = layout_facts(layout);
  if (row.mark == carving_mark::not_looked_for) return std::nullopt;
  chunk_layout found{layout, {}};
  if (row.mark != carving_mark::none) found.entry_places = entry_places_of(row.entry_bytes);
  return found;
}

}  // namespace ovrik
