#include "driver/list_road.h"

#include <memory>
#include <string>

#include "driver/directory_walk.h"
#include "driver/hive_source.h"
#include "driver/host/console.h"
#include "driver/options/path_variables.h"
#include "driver/plain_hive.h"
#include "driver/read_words.h"
#include "driver/stdin_stream.h"
#include "sources/host/fileio.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

/// The paths of a run; a list on the standard input goes before a folder tree.
std::unique_ptr<uni::stdin_stream> open_list(const list_options& list) {
  if (list.from_standard_input) return std::make_unique<uni::stdin_stream>();
  if (list.folder.empty()) return nullptr;
  return std::make_unique<lvportdir::stdin_stream_ex>(list.folder, list.num_subdirs, list.filters);
}

/// Writes the rows of the hive at `path`, if it is a SYSTEM hive. False: its control sets cannot be
/// told, which ends the list.
bool process_hive(const std::string& path, const hive_output& output) {
  const auto hive = open_hive_source(path, output.opening);
  if (hive == nullptr || !is_system_hive(*hive)) return true;
  const hive_outcome outcome = print_hive(output, *hive, path);
  if (outcome != hive_outcome::found) print_problem("probs parsing from %s\n", path.c_str());
  return outcome != hive_outcome::no_control_sets;
}

}  // namespace

int32_t run_list_road(const list_options& list, const hive_output& output) {
  const std::unique_ptr<uni::stdin_stream> paths = open_list(list);
  if (paths == nullptr) return -1;
  std::ostream& out = output.writer.out();
  for (std::string line; out.good() && paths->next_line(line);) {
    if (line.empty()) continue;
    const std::string path = expand_path_variables(lvportdir::strip_long_prefix(line));
    if (!uni::file_opens(path)) continue;
    print_message("analyzing: %s\n", path.c_str());
    const bool goes_on = process_hive(path, output);
    say_read_faults(output.opening.faults, output.opening.log);
    if (!goes_on) return 0;
    out.flush();  // what one hive gave is safe from whatever the next one does
  }
  return 0;
}

}  // namespace ovrik
