// What tells the pages of a cache, per layout, when no registry tree leads to them.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "hive/carving/hive_cell.h"
#include "shim/shim_cache.h"

namespace ovrik {

/// Size of a page and of the steps in which pages are looked for, in bytes.
constexpr uint32_t chunk_page_bytes = 4096;

/// A page that begins with "hbin" starts a bin of a hive (registry hbin header). Its first cell is
/// what counts here: the segments of a large value have bins of their own.
namespace bin_page {
constexpr uint32_t bin_offset_at = 4;  ///< u32: place of the bin in its hive, behind the base block
constexpr uint32_t first_cell_at = 32;  ///< the bin header's length
constexpr uint32_t data_at = first_cell_at + cell::content_at;
constexpr uint32_t data_bytes = chunk_page_bytes - data_at;
}  // namespace bin_page

/// How the pages of one cache layout are told.
struct chunk_layout {
  shim_layout layout = shim_layout::none;
  /// Where on a page the first entry may begin: the places at which entries of this length fall
  /// in the first eight segments of a value. In ascending order; none if entries have no fixed
  /// length, so that pages cannot be told.
  std::vector<uint16_t> entry_places;
};

/// The places of `layout`; nothing if the carver does not look for that layout.
std::optional<chunk_layout> chunk_layout_of(shim_layout layout);

}  // namespace ovrik
