#include "driver/memfile_road.h"

#include <cinttypes>
#include <string>

#include "driver/chunk_folder.h"
#include "driver/host/console.h"
#include "driver/host/host_console.h"
#include "hive/carving/chunk_reassembly.h"
#include "hive/carving/chunk_scanner.h"
#include "hive/carving/chunk_stats.h"
#include "output/streams.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

/// Says what the carver comes across.
class carving_words : public carve_listener {
 public:
  carving_words(const carving_request& request, diagnostics_log& log)
      : m_log(log), m_shows_progress(request.show_progress && standard_error_is_terminal()) {}

  void scanned(uint64_t bytes, uint64_t source_bytes) override {
    const uint64_t percent = bytes * 100 / source_bytes;
    if (!m_shows_progress || percent == m_percent) return;
    constexpr size_t progress_width = 45;
    show_progress(progress_width, "scanned: " + std::to_string(percent) + " %");
    m_percent = percent;
  }

  void layout_recognised(uint64_t offset, shim_layout layout) override {
    diag_printf(m_log, "cache of layout %u at 0x%" PRIx64, static_cast<unsigned>(layout), offset);
  }

  void scan_stopped(uint64_t offset) override {
    diag_printf(m_log, "the scan was cut short at 0x%" PRIx64, offset);
  }

  void db_cell_reached(size_t index, const db_cell& cell) override {
    print_message("Address #%zu : offset: 0x%08x : offset: 0x%08x : num: 0x%04x\n", index,
                  cell.position, cell.list_offset, cell.segment_count);
  }

  void segment_missing(uint32_t number, uint32_t cell_offset, uint32_t page_offset) override {
    print_message("hbin #%u, offset: 0x%08x [not available], adjusted 0x%08x\n", number,
                  cell_offset, page_offset);
  }

  /// Takes the progress away in front of the first words.
  void end_progress() const {
    if (m_shows_progress) clear_progress();
  }

 private:
  diagnostics_log& m_log;
  bool m_shows_progress;
  uint64_t m_percent = 0;
};

/// True if this run needs the file at `path` for something else.
bool is_needed(const std::string& path, const carving_request& request,
               const diagnostics_log& log) {
  return lvportdir::same_file(path, request.source_path) ||
         lvportdir::same_file(path, request.results_path) ||
         lvportdir::same_file(path, log.diag_path);
}

/// A file in the folder of chunks. One that would take the place of a file that no run of carving
/// left, or that this run needs for something else, is not opened, and nothing written to it
/// arrives.
class carved_file {
 public:
  carved_file(const std::string& name, const carving_request& request, diagnostics_log& log)
      : m_path(chunk_folder_path(name)) {
    m_spared = is_needed(m_path, request, log) || is_foreign_in_chunk_folder(name);
    if (m_spared) return;
    lvportdir::remove_plain_file(m_path);
    m_file.open_new(m_path);
    if (!m_file.is_open()) diag_printf(log, "%s does not open", m_path.c_str());
  }

  uni::fileio& file() { return m_file; }

  /// True if the file does not open, which is not reported.
  bool is_skipped() const { return !m_spared && !m_file.is_open(); }

  /// Ends the file. False: what was written did not arrive, which has been said on standard error.
  bool finish(bool written) {
    if (m_file.close() && written) return true;
    print_message("prob writing %s\n", m_path.c_str());
    return false;
  }

 private:
  std::string m_path;
  bool m_spared = false;
  uni::fileio m_file;
};

/// The files of one run.
class carved_files {
 public:
  carved_files(const scanned_source& source, const carving_request& request, diagnostics_log& log)
      : m_source(source), m_request(request), m_log(log) {}

  /// Removes what earlier runs left: their chunks are no pages of this run's list.
  void remove_earlier() const {
    for (const std::string& name : earlier_chunk_files()) {
      const std::string path = chunk_folder_path(name);
      if (!is_needed(path, m_request, m_log)) lvportdir::remove_plain_file(path);
    }
  }

  void write_stats(const carved_cache& carved) {
    carved_file stats("stats.txt", m_request, m_log);
    if (stats.is_skipped()) return;
    uni::fileio_output out(stats.file());
    write_chunk_stats(out, m_source, carved);
    out.flush();
    if (!stats.finish(out.good())) m_all_written = false;
  }

  void write_chunks(const std::vector<carved_chunk>& chunks, const char* name_end) {
    for (size_t i = 0; i < chunks.size(); ++i) {
      carved_file chunk("chunk_" + std::to_string(i) + name_end, m_request, m_log);
      if (chunk.is_skipped()) continue;
      if (!chunk.finish(write_chunk(chunk.file(), chunks[i]))) m_all_written = false;
    }
  }

  /// False: something could not be written, which has been said on standard error.
  bool all_written() const { return m_all_written; }

 private:
  bool write_chunk(uni::fileio& file, const carved_chunk& chunk) const {
    uint64_t written = 0;
    for (const chunk_piece& piece : chunk.pieces) {
      if (written < piece.at && !file.extend(piece.at)) return false;
      const byte_view bytes = piece_bytes(m_source, piece);
      if (!file.append(bytes.data(), bytes.size())) return false;
      written = piece.at + bytes.size();
    }
    return written == chunk.size || file.extend(chunk.size);
  }

  const scanned_source& m_source;
  const carving_request& m_request;
  diagnostics_log& m_log;
  bool m_all_written = true;
};

}  // namespace

int32_t run_memfile_road(const carving_request& request, diagnostics_log& log,
                         read_faults& faults) {
  scanned_source source;
  if (!open_scanned_source(source, request.source_path)) return -1;
  if (!lvportdir::make_folders(chunk_folder)) {
    print_message("prob trying to create the folder %s, continuing w/o one\n", chunk_folder);
  }
  carving_words words(request, log);
  const bool found = scan_pages(source, words);
  words.end_progress();
  faults.add(source.faults);
  if (!found) {
    print_message("none found\n");
    return -1;
  }
  if (!are_bins_in_place(source)) return -1;
  const carved_cache carved = reassemble(source, words);
  faults.add(source.faults);
  carved_files files(source, request, log);
  files.remove_earlier();
  files.write_stats(carved);
  files.write_chunks(carved.primary, ".bin");
  files.write_chunks(carved.other, "_other.bin");
  return files.all_written() && !(carved.primary.empty() && carved.other.empty()) ? 0 : -1;
}

}  // namespace ovrik
