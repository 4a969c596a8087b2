// What one transaction log holds, before anything is compared with the hive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/byte_view.h"
#include "hive/base_block.h"

namespace ovrik {

enum class log_kind {
  none,         ///< no log, or one in which nothing stands behind the base block
  dirty_pages,  ///< up to Windows 8: one dirty vector ("DIRT") and the pages that it names
  entries,      ///< from Windows 8.1 on: log entries ("HvLE")
};

/// What ended the reading of a log.
enum class log_end {
  nothing,     ///< no log, or no base block to begin with
  no_more,     ///< all was read, or no entry stands behind the last one: the usual end
  number,      ///< an entry is not numbered one more than the last: an older one, as a rule
  bad_header,  ///< the hash over an entry's header is wrong
  bad_size,    ///< a size, a count or an alignment is impossible
  bad_page,    ///< a page lies outside of the bins or is not made of whole sectors
  bad_hash,    ///< the hash over an entry's pages is wrong
  cut,         ///< the log ends in front of the last byte that is needed
  unreadable,  ///< the same, because the rest could not be read
};

/// Bytes that a log puts in the place of others; they belong to the log.
struct log_page {
  uint64_t bins_offset = 0;  ///< from the first bin
  byte_view bytes;           ///< whole sectors of 512
};

/// Pages that count together or not at all.
struct log_entry {
  uint32_t sequence = 0;
  size_t first_page = 0;  ///< in the list of all pages
  size_t page_count = 0;
};

struct scanned_log {
  log_kind kind = log_kind::none;
  std::optional<base_block> base;
  std::vector<log_entry> entries;  ///< sound ones, their numbers without a gap
  std::vector<log_page> pages;     ///< of all entries, in their order
  log_end end = log_end::nothing;
  uint64_t end_at = 0;  ///< where the first entry that does not count would begin
};

/// Reads a whole log (offsets and sizes in bytes; nothing outside of `bytes` is ever named).
/// Without a sound base block nothing in the log counts.
scanned_log scan_hive_log(byte_view bytes);

/// Reads the log entries behind the base block of `log` (HVLE log entry header, Marvin32 hashes)
/// up to the first one that is wrong.
void scan_log_entries(scanned_log& log, byte_view bytes);

/// Reads the dirty vector behind the base block of `log` and the pages that it names, as one entry
/// with the number of the base block; all of it or nothing.
void scan_dirty_vector(scanned_log& log, byte_view bytes);

}  // namespace ovrik
