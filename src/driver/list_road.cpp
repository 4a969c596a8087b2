#include "driver/list_road.h"

#include <cstdio>
#include <memory>

#include "driver/directory_walk.h"
#include "driver/hive_source.h"
#include "driver/host/console.h"
#include "driver/options/path_variables.h"
#include "driver/registry_commands.h"
#include "driver/stdin_stream.h"
#include "sources/host/fileio.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

/// The list of a run; a list on the standard input goes before a folder tree.
std::unique_ptr<uni::stdin_stream> open_list(const cmdline_options& options) {
  if (options.pipe_mode) return std::make_unique<uni::stdin_stream>();
  if (options.enumdir_path.empty()) return nullptr;
  return std::make_unique<lvportdir::stdin_stream_ex>(options.enumdir_path, options.num_subdirs,
                                                      options.filters);
}

bool opens(const std::string& path) {
  uni::fileio file;
  return file.open_read(path);
}

/// Writes the rows of the hive at `options.source_path`, if it is a SYSTEM hive. False: its control
/// sets cannot be told, which ends the list.
bool process_hive(cmdline_options& options, std::ostream& out) {
  const std::string& path = options.source_path;
  const auto hive = open_hive_source(path, options);
  if (hive == nullptr || !is_system_hive(*hive)) return true;
  std::vector<registry_command> commands = build_shim_commands_current(path);
  if (options.all_controlsets && !build_shim_commands_all(commands, *hive, path)) {
    print_problem("probs parsing from %s\n", path.c_str());
    return false;
  }
  if (!has_stream_header(options)) options.emit_row_header = true;
  if (run_registry_commands(commands, out, *hive, options) == 0) {
    print_problem("probs parsing from %s\n", path.c_str());
  }
  return true;
}

}  // namespace

int32_t run_list_road(cmdline_options& options, std::ostream& out) {
  options.multi_source = true;
  const std::unique_ptr<uni::stdin_stream> list = open_list(options);
  if (list == nullptr) return -1;
  for (std::string line; out.good() && list->next_line(line);) {
    if (line.empty()) continue;
    options.source_path = expand_path_variables(lvportdir::strip_long_prefix(line));
    options.hive_location = options.source_path;
    if (!opens(options.source_path)) continue;
    print_message("analyzing: %s\n", options.source_path.c_str());
    if (!process_hive(options, out)) return 0;
    out.flush();  // what one hive gave is safe from whatever the next one does
  }
  return 0;
}

}  // namespace ovrik
