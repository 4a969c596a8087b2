// Caches that are long enough to be carved, and sources to carve them from.

#pragma once

#include "support/bytes.h"

namespace test_support {

constexpr size_t page_bytes = 4096;
constexpr size_t segment_bytes = 16344;  ///< of data, on four pages

/// A cache of an array layout that fills `segments` segments to the last byte and has a path near
/// the end of every page without entries. Layout 1 has a size of its own.
bytes cache_of_segments(int layout, size_t segments);

/// `content` with zeros up to `size`.
bytes padded(bytes content, size_t size);

/// The bins, of four pages each, of the segments that hold `value`; the first one says that it
/// stands at `bin_offset`.
bytes segment_bins(const bytes& value, uint32_t bin_offset = 0);

/// A raw file that is no hive: pages of noise and of zeros between the pages of `value`.
bytes strewn(const bytes& value);

}  // namespace test_support
