#include "driver/list_road.h"

#include <memory>
#include <string>

#include "base/clean_text.h"
#include "driver/directory_walk.h"
#include "driver/hive_source.h"
#include "driver/host/console.h"
#include "driver/memory_end.h"
#include "driver/options/path_variables.h"
#include "driver/read_words.h"
#include "driver/stdin_stream.h"
#include "hive/hive_root.h"
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
  if (outcome != hive_outcome::found) {
    print_problem("probs parsing from %s\n", clean_text(path).c_str());
  }
  return outcome != hive_outcome::no_control_sets;
}

}  // namespace

int32_t run_list_road(const list_options& list, const hive_output& output) {
  const std::unique_ptr<uni::stdin_stream> paths = open_list(list);
  if (paths == nullptr) return -1;
  std::ostream& out = output.writer.out();
  int32_t exit_value = 0;
  for (std::string line; out.good() && paths->next_line(line);) {
    if (line.empty()) continue;
    // What a walk finds has its name, whatever that looks like.
    const std::string plain = lvportdir::strip_long_prefix(line);
    const std::string path = list.from_standard_input ? path_of_list_line(plain) : plain;
    if (!uni::file_opens(path)) continue;
    print_message("analyzing: %s\n", clean_text(path).c_str());
    bool goes_on = true;
    const auto process = [&] { return goes_on = process_hive(path, output), 0; };
    if (unless_memory_ends(path, process) != 0) exit_value = -1;
    say_read_faults(output.opening.faults, output.opening.log);
    if (!goes_on) return exit_value;
    out.flush();  // what one hive gave is safe from whatever the next one does
  }
  return exit_value;
}

}  // namespace ovrik
