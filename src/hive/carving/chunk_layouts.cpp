#include "hive/carving/chunk_layouts.h"

#include <set>

namespace ovrik {

namespace {

struct chunk_row {
  shim_layout layout;
  uint32_t magic;
  uint32_t entry_bytes;
  bool hunts_paths;
};

// Layouts 2 to 5 stand here with the magic of 6 and 7, which their caches do not begin with: no
// page of theirs starts a chunk, and only the lists of a hive lead to their pages.
// clang-format off
constexpr chunk_row rows[] = {
    // layout                     magic       entry  paths
    {shim_layout::xp,             0xDEADBEEF, 552,   false},
    {shim_layout::server2003_x86, 0xBADC0FEE, 24,    true},
    {shim_layout::server2003_x64, 0xBADC0FEE, 32,    true},
    {shim_layout::vista_x86,      0xBADC0FEE, 24,    true},
    {shim_layout::vista_x64,      0xBADC0FEE, 32,    true},
    {shim_layout::win7_x86,       0xBADC0FEE, 32,    true},
    {shim_layout::win7_x64,       0xBADC0FEE, 48,    true},
    {shim_layout::win8,           0,          0,     true},
    {shim_layout::win10,          0,          0,     true},
    {shim_layout::win10_later,    0,          0,     true},
};
// clang-format on

/// Follows entries of `entry_bytes` through eight segments of four pages each. Numbers wrap at 32
/// bits.
std::vector<uint16_t> entry_places_of(uint32_t entry_bytes) {
  constexpr uint32_t segments = 8;
  constexpr uint32_t tail_pages = 3;
  constexpr uint32_t first_place = 164;
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
  for (const chunk_row& row : rows) {
    if (row.layout != layout) continue;
    chunk_layout found{row.layout, row.magic, row.entry_bytes, row.hunts_paths, {}};
    if (row.entry_bytes != 0) found.entry_places = entry_places_of(row.entry_bytes);
    return found;
  }
  return std::nullopt;
}

}  // namespace ovrik
