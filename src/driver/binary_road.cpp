#include "driver/binary_road.h"

#include <sstream>
#include <vector>

#include "driver/host/console.h"
#include "driver/options/date_window.h"
#include "driver/options/file_filter.h"
#include "driver/options/path_variables.h"
#include "driver/stdin_stream.h"
#include "shim/shim_parse.h"
#include "shim/shim_rows.h"
#include "sources/host/fileio.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

constexpr const char* section_rule =
    "----------------------------------------------------------------------------------------------"
    "-----------";
constexpr size_t progress_width = 45;
constexpr size_t progress_name = 30;

void show_analyzing(const std::string& path) {
  const std::string name = last_component(path);
  const size_t cut = name.size() > progress_name ? name.size() - progress_name : 0;
  show_progress(progress_width, "analyzing: .." + name.substr(cut));
}

/// Fills `rows` with those of the raw cache at `options.source_path`. Returns what the diagnostics
/// say instead where that fails, null where it does not.
const char* read_rows(cmdline_options& options, std::ostringstream& rows) {
  lvportdir::file_times times;
  if (!lvportdir::file_status(options.source_path, times)) return " prob getting file stats";
  uni::fileio file;
  if (!file.open_read(options.source_path)) return " prob reading file";
  if (file.length() == 0) return " no data in file";
  std::vector<uint8_t> bytes;
  if (!uni::read_whole(bytes, options.source_path, max_binary_file)) return " prob reading file";
  const byte_view data(bytes);
  shim_cache_results results;
  if (!parse_shim_cache(results, data, 0, options.raw_mode)) return " prob parsing shim cache";
  options.emit_row_header = true;
  if (!output_shim_cache(rows, results, options, data)) {
    return " prob outputting shim cache results";
  }
  return nullptr;
}

}  // namespace

int32_t run_binary_road(cmdline_options& options, std::ostream& out,
                        std::ostream& standard_output) {
  std::vector<uint8_t> bytes;
  if (!uni::read_whole(bytes, options.source_path, max_binary_file)) return -1;
  const byte_view data(bytes);
  shim_cache_results results;
  if (!parse_shim_cache(results, data, 0, options.raw_mode)) {
    standard_output << "prob calling parse_shim_cache, aborting\n";
    return -1;
  }
  return output_shim_cache(out, results, options, data) ? 0 : -1;
}

int32_t run_pipe_binary_road(cmdline_options& options, std::ostream& out) {
  options.multi_source = true;
  uni::stdin_stream lines;
  for (std::string line; out.good() && lines.next_line(line);) {
    bool unreadable = false;
    if (!lies_in_date_window(options, line) ||
        !filter_accepts_path(line, options.filters, unreadable)) {
      continue;
    }
    options.source_path = expand_path_variables(lvportdir::strip_long_prefix(line));
    if (options.show_progress) show_analyzing(options.source_path);
    diag_printf(options, "Analyzing: %s", options.source_path.c_str());
    std::ostringstream rows;
    if (const char* problem = read_rows(options, rows)) {
      diag_printf(options, "%s", problem);
      continue;
    }
    diag_printf(options, " successfully processed [hdrs: %zu]", options.columns.size());
    out << section_rule << "\nArtifact: Shim Cache\nBinary source: " << options.source_path << '\n'
        << section_rule << '\n'
        << rows.view() << '\n'
        << std::flush;
  }
  return 0;
}

}  // namespace ovrik
