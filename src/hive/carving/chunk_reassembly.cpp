#include "hive/carving/chunk_reassembly.h"

#include <algorithm>
#include <new>
#include <utility>

namespace ovrik {

namespace {

constexpr uint64_t segment_room = 16384;     // in a chunk by lists, more than any segment fills
constexpr uint32_t third_tail_bytes = 4092;  // the last 4 bytes belong to the next cell

/// What follows a bin page: the tail pages that its first cell reaches to.
struct tail_page {
  uint64_t number;  ///< from 0
  uint32_t page;    ///< index in `scanned_source::pages`
  uint32_t length;  ///< of the data on it, in bytes
};

/// Takes the pages out of `source.tail_pages` that are there of the tail of the bin page at
/// `offset`, in order. What the bin page claims costs nothing where no pages are.
std::vector<tail_page> take_tail(scanned_source& source, uint64_t offset, uint64_t count,
                                 page_run& run) {
  std::vector<tail_page> tail;
  auto found = source.tail_pages.upper_bound(offset);
  while (found != source.tail_pages.end() && found->first <= offset + count * chunk_page_bytes) {
    const uint64_t number = (found->first - offset) / chunk_page_bytes - 1;
    tail.push_back(
        {number, found->second, number == 2 ? third_tail_bytes : uint32_t{chunk_page_bytes}});
    run.push_back(found->first);
    found = source.tail_pages.erase(found);
  }
  return tail;
}

/// The chunks that the segment lists of a hive lead to.
class list_route {
 public:
  list_route(scanned_source& source, carve_listener& listener)
      : m_source(source),
        m_listener(listener),
        m_misses_left(most_claimed + source.file_size / chunk_page_bytes) {}

  void run(carved_cache& carved) {
    for (size_t index = 0; index < m_source.db_cells.size(); ++index) {
      const db_cell& cell = m_source.db_cells[index];
      m_listener.db_cell_reached(index, cell);
      std::vector<uint8_t> list;
      if (!read_list(cell, list)) continue;
      carved_chunk chunk{.size = cell.segment_count * segment_room};
      page_run pages;
      follow_list(byte_view(list), chunk, pages);
      if (pages.empty()) continue;
      carved.runs.push_back(std::move(pages));
      carved.primary.push_back(std::move(chunk));
    }
  }

 private:
  static constexpr uint64_t most_claimed = 0xFFFF;  // what one cell can claim
  static constexpr uint32_t long_list = 1024;       // 16 MiB, more than any cache has

  /// Reads the offsets of a segment list. False: it does not lie in the source, its cell is too
  /// small for it, or it is long and the lists so far have named too much that is not there.
  bool read_list(const db_cell& db, std::vector<uint8_t>& list) {
    const uint64_t position = uint64_t{db.list_offset} + base_block_bytes;
    const uint64_t entries_at = position + cell::content_at;
    const size_t list_bytes = size_t{cell::offset_bytes} * db.segment_count;
    if (!read_exactly(list, cell::content_at, position)) return false;
    if (cell_size(byte_view(list)) < cell::content_at + list_bytes) return false;
    if (entries_at + list_bytes > m_source.file_size) return false;
    if (m_misses_left == 0 && db.segment_count > long_list) return false;
    return list_bytes != 0 && read_exactly(list, list_bytes, entries_at);
  }

  bool read_exactly(std::vector<uint8_t>& bytes, size_t size, uint64_t position) const {
    return m_source.file->read_vector(bytes, size, position, m_source.faults) &&
           bytes.size() == size;
  }

  void follow_list(byte_view list, carved_chunk& chunk, page_run& pages) {
    uint64_t at = 0;
    for (uint64_t entry = 0; list.has(entry, cell::offset_bytes); entry += cell::offset_bytes) {
      const uint32_t cell_offset = list.u32_at(entry);
      const auto number = static_cast<uint32_t>(entry / cell::offset_bytes + 1);
      // The segment's cell is the first one of a bin of its own.
      const auto page_offset =
          static_cast<uint32_t>(cell_offset + base_block_bytes - bin_page::first_cell_at);
      const auto bin = m_source.bin_pages.find(page_offset);
      if (bin == m_source.bin_pages.end()) {
        // Pages that are there bound what is found; what is not there needs a bound of its own.
        if (m_misses_left == 0) return;
        --m_misses_left;
        m_listener.segment_missing(number, cell_offset, page_offset);
        continue;
      }
      pages.push_back(page_offset);
      add(chunk, at, bin->second, bin_page::data_at, bin_page::data_bytes);
      at += bin_page::data_bytes;
      const uint64_t tails = tail_page_count(m_source.pages[bin->second].view());
      m_source.bin_pages.erase(bin);
      m_source.start_pages.erase(page_offset);
      at += add_tail(chunk, at, page_offset, tails, pages);
    }
  }

  /// Adds the tail pages that are there, each in its place, and returns the length of them all. A
  /// missing page counts as a whole one.
  uint64_t add_tail(carved_chunk& chunk, uint64_t at, uint64_t bin_offset, uint64_t count,
                    page_run& pages) {
    uint64_t left_out = 0;
    for (const tail_page& tail : take_tail(m_source, bin_offset, count, pages)) {
      add(chunk, at + tail.number * chunk_page_bytes - left_out, tail.page, 0, tail.length);
      left_out += chunk_page_bytes - tail.length;
    }
    return count * chunk_page_bytes - left_out;
  }

  /// Adds bytes of a page at `at`, cut where the chunk ends.
  static void add(carved_chunk& chunk, uint64_t at, uint32_t page, uint32_t from, uint32_t length) {
    if (at >= chunk.size) return;
    const auto fitting = static_cast<uint32_t>(std::min<uint64_t>(length, chunk.size - at));
    chunk.pieces.push_back({at, page, from, fitting});
  }

  scanned_source& m_source;
  carve_listener& m_listener;
  uint64_t m_misses_left;
};

/// The chunks that begin with a page that holds the header of a cache. The pages of the segments
/// that follow are taken for those of the same cache, as long as there are any.
class header_route {
 public:
  explicit header_route(scanned_source& source) : m_source(source) {}

  void run(carved_cache& carved) {
    while (!m_source.start_pages.empty()) {
      std::pair<uint64_t, uint32_t> bin = *m_source.start_pages.begin();
      m_source.start_pages.erase(bin.first);
      m_source.bin_pages.erase(bin.first);
      carved_chunk chunk;
      page_run pages = {bin.first};
      for (;;) {
        const auto [offset, page] = bin;
        add(chunk, page, bin_page::data_at, bin_page::data_bytes);
        const uint64_t tails = tail_page_count(m_source.pages[page].view());
        for (const tail_page& tail : take_tail(m_source, offset, tails, pages)) {
          add(chunk, tail.page, 0, tail.length);
        }
        if (m_source.bin_pages.empty()) break;
        // The next segment begins behind this one or, if it does not, wherever the next one does.
        auto next = m_source.bin_pages.find(offset + (tails + 1) * chunk_page_bytes);
        if (next == m_source.bin_pages.end()) next = m_source.bin_pages.begin();
        bin = *next;
        m_source.bin_pages.erase(next);
      }
      carved.runs.push_back(std::move(pages));
      carved.other.push_back(std::move(chunk));
    }
  }

 private:
  static void add(carved_chunk& chunk, uint32_t page, uint32_t from, uint32_t length) {
    chunk.pieces.push_back({chunk.size, page, from, length});
    chunk.size += length;
  }

  scanned_source& m_source;
};

}  // namespace

carved_cache reassemble(scanned_source& source, carve_listener& listener) {
  carved_cache carved;
  try {
    if (source.is_hive) list_route(source, listener).run(carved);
  } catch (const std::bad_alloc&) {
    // The chunks that there was memory for stay.
  }
  try {
    header_route(source).run(carved);
  } catch (const std::bad_alloc&) {
    // The same.
  }
  return carved;
}

byte_view piece_bytes(const scanned_source& source, const chunk_piece& piece) {
  return source.pages[piece.page].view().clip(piece.from, piece.length);
}

}  // namespace ovrik
