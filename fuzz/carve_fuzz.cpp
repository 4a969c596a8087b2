// Fuzz entry of the carver: the input is a whole source. Chunks must stay what they are said to be.

#include <cstdlib>
#include <set>
#include <sstream>
#include <string>

#include "hive/carving/chunk_reassembly.h"
#include "hive/carving/chunk_scanner.h"
#include "hive/carving/chunk_stats.h"
#include "memory_file.h"

namespace {

class silent_listener : public ovrik::carve_listener {
 public:
  void scanned(uint64_t bytes, uint64_t source_bytes) override {
    if (bytes > source_bytes) std::abort();
  }
  void layout_recognised(uint64_t, ovrik::shim_layout) override {}
  void scan_stopped(uint64_t) override { std::abort(); }
  void db_cell_reached(size_t, const ovrik::db_cell& cell) override { m_listed = cell; }
  void segment_missing(uint32_t number, uint32_t, uint32_t) override {
    if (number > m_listed.segment_count) std::abort();
  }

 private:
  ovrik::db_cell m_listed;
};

void check(const ovrik::scanned_source& source, const ovrik::carved_chunk& chunk,
           std::set<uint32_t>& used) {
  uint64_t end = 0;
  for (const ovrik::chunk_piece& piece : chunk.pieces) {
    // A page with a header that an earlier chunk has taken in starts one of its own all the same.
    if (piece.at < end || (!used.insert(piece.page).second && piece.at != 0)) std::abort();
    if (piece_bytes(source, piece).size() != piece.length) std::abort();
    end = piece.at + piece.length;
  }
  if (end > chunk.size) std::abort();
}

void carve(const std::string& path) {
  ovrik::scanned_source source;
  silent_listener listener;
  if (!open_scanned_source(source, path) || !scan_pages(source, listener)) return;
  are_bins_in_place(source);
  const ovrik::carved_cache carved = reassemble(source, listener);
  std::set<uint32_t> used;
  uint64_t claimed = 0;
  for (const ovrik::carved_chunk& chunk : carved.primary) {
    check(source, chunk, used);
    claimed += chunk.size;
  }
  if (claimed > 0x40000000 + 4 * source.file_size) std::abort();
  for (const ovrik::carved_chunk& chunk : carved.other) check(source, chunk, used);
  std::ostringstream stats;
  write_chunk_stats(stats, source, carved);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const memory_file source(ovrik::byte_view(data, size));
  carve(source.path());
  return 0;
}
