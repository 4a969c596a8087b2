// One page of a raw file: whether it belongs to a cache, and what stands on it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/byte_view.h"
#include "hive/carving/chunk_layouts.h"

namespace ovrik {

/// A page that was recognised, with a copy of its bytes.
struct chunk_page {
  uint64_t offset = 0;    ///< in the source
  uint32_t entry_at = 0;  ///< where the first entry or path was found
  bool is_bin = false;    ///< otherwise a tail page, in the middle of a segment
  std::array<uint8_t, chunk_page_bytes> bytes = {};

  byte_view view() const { return byte_view(bytes.data(), bytes.size()); }
};

/// What a page holds besides the bytes of a cache. Places are in bytes from the page's start.
struct page_survey {
  size_t entry_count = 0;
  std::vector<uint32_t> path_offsets;  ///< where in the cache the entries' paths stand, ascending
  std::vector<uint32_t> path_places;   ///< paths that begin on the page, ascending
};

/// True if `page` begins a bin.
bool is_bin_page(byte_view page);

/// Number of pages behind a bin page that the first cell says its data reach to.
uint64_t tail_page_count(byte_view page);

/// Where the first entry of `layout` is on `page`, or else a path near the page's end; nothing if
/// the page is none of a cache of that layout.
std::optional<uint32_t> probe_page(const chunk_layout& layout, byte_view page);

/// What is on `page` from `start` on, where the probe found something.
page_survey survey_page(const chunk_layout& layout, byte_view page, uint32_t start);

}  // namespace ovrik
