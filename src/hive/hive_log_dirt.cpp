// The logs of Windows up to 8: a dirty vector with a bit for each page of 512 bytes of the bins,
// and behind it the pages whose bits are set.

#include "hive/hive_log_scan.h"

namespace ovrik {

namespace {

constexpr uint32_t page_bytes = 512;
constexpr uint32_t bin_alignment = 4096;
constexpr uint64_t bits_at = sealed_base_bytes + 4;  // behind "DIRT"

bool is_dirty(byte_view bytes, uint64_t page) {
  return (bytes.u8_at(bits_at + page / 8) >> (page % 8) & 1) != 0;
}

uint64_t up_to_whole_pages(uint64_t size) {
  return (size + page_bytes - 1) / page_bytes * page_bytes;
}

}  // namespace

void scan_dirty_vector(scanned_log& log, byte_view bytes) {
  log.kind = log_kind::dirty_pages;
  const uint32_t bins_bytes = log.base->bins_bytes;
  if (bins_bytes % bin_alignment != 0 || log.base->sequence1 != log.base->sequence2) {
    log.end = bins_bytes % bin_alignment != 0 ? log_end::bad_size : log_end::number;
    return;
  }
  const uint64_t page_count = bins_bytes / page_bytes;
  uint64_t at = up_to_whole_pages(bits_at + page_count / 8);
  if (at > bytes.size()) {
    log.end = log_end::cut;
    return;
  }
  for (uint64_t page = 0; page < page_count; ++page) {
    if (!is_dirty(bytes, page)) continue;
    const uint64_t first = page;
    while (page < page_count && is_dirty(bytes, page)) ++page;  // neighbours are one piece
    const uint64_t size = (page - first) * page_bytes;
    if (!bytes.has(at, size)) {
      log.pages.clear();
      log.end = log_end::cut;
      return;
    }
    log.pages.push_back({first * page_bytes, bytes.clip(at, size)});
    at += size;
  }
  log.entries.push_back({log.base->sequence1, 0, log.pages.size()});
  log.end_at = at;
}

}  // namespace ovrik
