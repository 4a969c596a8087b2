#include "driver/binary_road.h"

#include <vector>

#include "base/clean_text.h"
#include "driver/host/console.h"
#include "driver/memory_end.h"
#include "driver/options/path_variables.h"
#include "driver/read_words.h"
#include "driver/stdin_stream.h"
#include "shim/shim_parse.h"
#include "shim/shim_rows.h"
#include "sources/host/fileio.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"
#include "sources/host/source_reader.h"

namespace ovrik {

namespace {

constexpr const char* section_rule =
    "----------------------------------------------------------------------------------------------"
    "-----------";
constexpr size_t progress_width = 45;
constexpr size_t progress_name = 30;

void show_analyzing(const std::string& path) {
  const std::string name = last_component(path);
  show_progress(progress_width,
                "analyzing: .." + std::string(last_characters(name, progress_name)));
}

/// Writes the rows of the raw cache at `path` below a heading of their own. Returns what the
/// diagnostics say instead where that fails, null where it does not.
const char* write_rows_of(const std::string& path, const cache_section& section,
                          const shim_settings& settings, row_writer& writer, read_faults& faults) {
  lvportdir::file_times times;
  if (!lvportdir::file_status(path, times)) return " prob getting file stats";
  uni::fileio file;
  if (!file.open_read(path)) return " prob reading file";
  if (file.length() == 0) return " no data in file";
  std::vector<uint8_t> bytes;
  if (!read_whole_file(bytes, path, max_binary_file, faults)) return " prob reading file";
  const byte_view data(bytes);
  shim_cache_results results;
  if (!parse_shim_cache(results, data, 0, settings.raw_mode)) return " prob parsing shim cache";
  if (results.empty()) return " prob outputting shim cache results";
  std::ostream& out = writer.out();
  out << section_rule << "\nArtifact: Shim Cache\nBinary source: " << clean_text(path) << '\n'
      << section_rule << '\n';
  output_shim_cache(writer, section, results, settings, data);
  out << '\n' << std::flush;
  return nullptr;
}

}  // namespace

int32_t run_binary_road(const std::string& path, const std::string& shown_location,
                        const shim_settings& settings, row_writer& writer,
                        std::ostream& standard_output, read_faults& faults) {
  std::vector<uint8_t> bytes;
  if (!read_whole_file(bytes, path, max_binary_file, faults)) return -1;
  const byte_view data(bytes);
  shim_cache_results results;
  if (!parse_shim_cache(results, data, 0, settings.raw_mode)) {
    standard_output << "prob calling parse_shim_cache, aborting\n";
    return -1;
  }
  const cache_section section{.hive_location = shown_location};
  return output_shim_cache(writer, section, results, settings, data) ? 0 : -1;
}

int32_t run_pipe_binary_road(const run_options& options, std::ostream& out, diagnostics_log& log) {
  const cache_section section{.hive_location = options.aliases.shown({})};
  uni::stdin_stream lines;
  int32_t exit_value = 0;
  for (std::string line; out.good() && lines.next_line(line);) {
    bool unreadable = false;
    if (!lies_in_date_window(options.list.window, line) ||
        !filter_accepts_path(line, options.list.filters, unreadable)) {
      continue;
    }
    const std::string path = path_of_list_line(lvportdir::strip_long_prefix(line));
    if (options.show_progress) show_analyzing(path);
    diag_printf(log, "Analyzing: %s", path.c_str());
    row_writer writer(out, options.rows);
    read_faults faults;
    const char* problem = " prob allocating memory";
    const auto write = [&] {
      problem = write_rows_of(path, section, options.shim, writer, faults);
      return 0;
    };
    if (unless_memory_ends(path, write) != 0) exit_value = -1;
    say_read_faults(faults, log);
    if (problem != nullptr) {
      diag_printf(log, "%s", problem);
      continue;
    }
    diag_printf(log, " successfully processed [hdrs: %zu]", writer.columns().size());
  }
  return exit_value;
}

}  // namespace ovrik
