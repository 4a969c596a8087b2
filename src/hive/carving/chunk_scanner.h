// Finds the pages of a cache in a raw file: a hive whose tree is broken, a memory image or any
// other file that holds bins of a hive on 4 KiB boundaries.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hive/carving/chunk_page.h"
#include "sources/host/read_faults.h"
#include "sources/host/source_reader.h"

namespace ovrik {

/// A cell of a hive that says where the segments of a large value are.
struct db_cell {
  uint32_t position = 0;       ///< in the source
  uint32_t list_offset = 0;    ///< of the segment list, from the end of the base block
  uint16_t segment_count = 0;  ///< as claimed
};

/// Hears what the carver comes across while it works.
class carve_listener {
 public:
  carve_listener() = default;
  carve_listener(const carve_listener&) = delete;
  carve_listener& operator=(const carve_listener&) = delete;
  virtual ~carve_listener() = default;

  /// So many bytes of the source have been looked at.
  virtual void scanned(uint64_t bytes, uint64_t source_bytes) = 0;

  /// The header at `offset` decided which layout is looked for in the rest of the source.
  virtual void layout_recognised(uint64_t offset, shim_layout layout) = 0;

  /// The scan ended in front of its time, at `offset`: there is no memory for more pages.
  virtual void scan_stopped(uint64_t offset) = 0;

  /// The segments of cell `index` (from 0) are about to be looked for.
  virtual void db_cell_reached(size_t index, const db_cell& cell) = 0;

  /// Segment `number` (from 1) of the cell in hand, listed as `cell_offset`, should begin on the
  /// page at `page_offset`, where no bin page of a cache was found.
  virtual void segment_missing(uint32_t number, uint32_t cell_offset, uint32_t page_offset) = 0;
};

/// Pages by their offset in the source; what they lead to is an index in `scanned_source::pages`.
using page_map = std::map<uint64_t, uint32_t>;

/// A source and what was found in it.
struct scanned_source {
  std::optional<source_reader> file;  ///< there once it is open
  uint64_t file_size = 0;
  read_faults faults;            ///< what of it could not be read
  bool is_hive = false;          ///< the source begins like a hive: its own lists count
  chunk_layout layout;           ///< the first one that was recognised
  std::deque<chunk_page> pages;  ///< in the order of their offsets
  page_map bin_pages;
  page_map tail_pages;
  page_map start_pages;           ///< the bin pages that hold the header of a cache
  std::vector<db_cell> db_cells;  ///< in the order of their positions; none unless a hive
};

/// Opens `path` as `source`. False: it does not open or is smaller than a page.
bool open_scanned_source(scanned_source& source, const std::string& path);

/// Reads the source once and keeps the pages of the first layout that it recognises. A page that
/// the source ends in counts with zeros behind its end; what cannot be read is zeros. False: no bin
/// page or no tail page of a cache was found.
bool scan_pages(scanned_source& source, carve_listener& listener);

/// True if every bin page of a hive stands where it says that it does. Always true for a source
/// that is no hive.
bool are_bins_in_place(const scanned_source& source);

}  // namespace ovrik
