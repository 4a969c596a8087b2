// The logs of Windows 8.1 and later: entries, each with its pages and its hashes.

#include "base/marvin32.h"
#include "hive/hive_log_scan.h"

namespace ovrik {

namespace {

constexpr uint64_t hash_seed = 0x82EF4D887A4E55C5;
constexpr uint32_t sector_bytes = 512;
constexpr uint32_t bin_alignment = 4096;

// The header of a log entry.
constexpr size_t size_at = 0x04;  // of the entry, header and padding included
constexpr size_t sequence_at = 0x0C;
constexpr size_t bins_bytes_at = 0x10;
constexpr size_t page_count_at = 0x14;
constexpr size_t body_hash_at = 0x18;    // over what is behind the header
constexpr size_t header_hash_at = 0x20;  // over what is in front of it
constexpr size_t header_bytes = 0x28;

// A dirty page reference: an offset from the first bin and a size.
constexpr size_t reference_bytes = 8;

/// Appends the pages of an entry.
log_end read_pages(std::vector<log_page>& pages, byte_view entry) {
  const uint64_t bins_bytes = entry.u32_at(bins_bytes_at);
  const uint64_t count = entry.u32_at(page_count_at);
  uint64_t bytes_at = header_bytes + count * reference_bytes;
  if (bytes_at > entry.size()) return log_end::bad_size;
  for (uint64_t i = 0; i < count; ++i) {
    const uint64_t reference_at = header_bytes + i * reference_bytes;
    const uint64_t offset = entry.u32_at(reference_at);
    const uint64_t size = entry.u32_at(reference_at + 4);
    if (size == 0 || (offset | size) % sector_bytes != 0 || offset + size > bins_bytes) {
      return log_end::bad_page;
    }
    if (!entry.has(bytes_at, size)) return log_end::bad_size;
    pages.push_back({offset, entry.clip(bytes_at, size)});
    bytes_at += size;
  }
  return log_end::no_more;
}

/// Appends the entry at the start of `rest` if it is sound, and tells its size.
log_end read_entry(scanned_log& log, byte_view rest, uint32_t& size) {
  if (!rest.text_at(0, "HvLE")) return log_end::no_more;
  if (!rest.has(0, header_bytes)) return log_end::cut;
  if (marvin32(rest.clip(0, header_hash_at), hash_seed) != rest.u64_at(header_hash_at)) {
    return log_end::bad_header;
  }
  const uint32_t sequence = rest.u32_at(sequence_at);
  if (!log.entries.empty() && sequence != log.entries.back().sequence + 1) return log_end::number;
  size = rest.u32_at(size_at);
  if (size < header_bytes || size % sector_bytes != 0 ||
      rest.u32_at(bins_bytes_at) % bin_alignment != 0) {
    return log_end::bad_size;
  }
  if (!rest.has(0, size)) return log_end::cut;
  const byte_view entry = rest.clip(0, size);
  if (marvin32(entry.from(header_bytes), hash_seed) != entry.u64_at(body_hash_at)) {
    return log_end::bad_hash;
  }
  const size_t first_page = log.pages.size();
  const log_end result = read_pages(log.pages, entry);
  if (result != log_end::no_more) {
    log.pages.resize(first_page);
    return result;
  }
  log.entries.push_back({sequence, first_page, log.pages.size() - first_page});
  return log_end::no_more;
}

}  // namespace

void scan_log_entries(scanned_log& log, byte_view bytes) {
  log.kind = log_kind::entries;
  for (;;) {
    uint32_t size = 0;
    log.end = read_entry(log, bytes.from(log.end_at), size);
    if (log.end != log_end::no_more || size == 0) return;
    log.end_at += size;
  }
}

}  // namespace ovrik
