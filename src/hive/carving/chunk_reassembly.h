// Puts the pages of a cache together again. A chunk does not hold bytes, it tells which bytes of
// which pages it is made of: what a damaged list claims costs no memory.
#pragma once

#include <cstdint>
#include <vector>

#include "base/byte_view.h"
#include "hive/carving/chunk_scanner.h"

namespace ovrik {

/// A run of bytes of one page within a chunk.
struct chunk_piece {
  uint64_t at = 0;      ///< in the chunk
  uint32_t page = 0;    ///< index in `scanned_source::pages`
  uint32_t from = 0;    ///< in the page
  uint32_t length = 0;  ///< in bytes
};

/// Raw cache data. The pieces stand in the order of their places and do not overlap; what lies
/// between and behind them is zeros.
struct carved_chunk {
  uint64_t size = 0;
  std::vector<chunk_piece> pieces;
};

/// The pages that were noted for a chunk, by their offsets in the source.
using page_run = std::vector<uint64_t>;

struct carved_cache {
  std::vector<carved_chunk> primary;  ///< by the segment lists of a hive
  std::vector<carved_chunk> other;    ///< by the order of the pages in the source
  std::vector<page_run> runs;         ///< of both, in the order of their making
};

/// Makes chunks of the pages in `source`, whose maps are used up: a page goes into one chunk at
/// most, but for a page with a header, which starts a chunk even if another one has it already.
/// Nothing says that a chunk is whole.
carved_cache reassemble(scanned_source& source, carve_listener& listener);

/// The bytes of a piece.
byte_view piece_bytes(const scanned_source& source, const chunk_piece& piece);

}  // namespace ovrik
