#include "driver/options/evidence_guard.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "base/byte_view.h"
#include "base/text.h"
#include "driver/options/path_variables.h"
#include "shim/shim_detect.h"
#include "sources/host/file_places.h"
#include "sources/host/fileio.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

using lvportdir::same_file;

/// Every path that an argument may stand for: itself, without its variables, or a part of a list.
std::vector<std::string> paths_of(const std::string& argument) {
  std::vector<std::string> paths = list_parts(argument);
  paths.push_back(argument);
  paths.push_back(expand_path_variables(argument));
  return paths;
}

/// True if the argument names the file or a device that takes its bytes from it.
bool names_file(const std::string& argument, const std::string& file) {
  for (const std::string& path : paths_of(argument)) {
    if (same_file(file, path)) return true;
    for (const std::string& backing : lvportdir::backing_files(path)) {
      if (same_file(file, backing)) return true;
    }
  }
  return false;
}

bool any_names_file(const std::vector<std::string>& arguments, const std::string& file) {
  return std::any_of(arguments.begin(), arguments.end(),
                     [&file](const std::string& argument) { return names_file(argument, file); });
}

bool is_source(const std::string& file, const run_options& options) {
  return any_names_file(options.named_sources, file) ||
         any_names_file(options.source.vmdk_files, file) || names_file(options.source.path, file);
}

/// True for the name of an option that another one of its kind has put aside, with an output behind
/// it.
bool names_output(const std::string& argument) {
  constexpr const char* output_options[] = {"-out", "-outfile", "-diags"};
  return std::any_of(std::begin(output_options), std::end(output_options),
                     [&](const char* name) { return equal_ignoring_case(argument, name); });
}

/// What no option took may be the value of one that was mistyped.
bool is_unread_argument(const std::string& file, const run_options& options) {
  const argument_list& unread = options.unread;
  for (size_t i = 1; i < unread.size(); ++i) {
    if (!names_output(unread[i - 1]) && names_file(unread[i], file)) return true;
  }
  return false;
}

/// True if a link in the tree leads to the file, or to the folder that it lies in.
bool is_linked_below(const std::string& file, const std::string& folder, uint32_t levels) {
  std::vector<lvportdir::directory_entry> entries;
  lvportdir::list_directory(entries, folder);
  return std::any_of(entries.begin(), entries.end(), [&](const lvportdir::directory_entry& entry) {
    if (!entry.is_directory) return same_file(file, entry.path);
    lvportdir::link_target unused;
    bool closes_cycle = false;
    if (lvportdir::is_folder_link(entry.path, unused, closes_cycle)) {
      return !closes_cycle && levels > 0 && lvportdir::lies_below(file, entry.path);
    }
    return levels > 0 && is_linked_below(file, entry.path, levels - 1);
  });
}

/// True if the file is one of the tree that the run walks, or would walk if it were sound.
bool is_in_walked_folder(const std::string& file, const run_options& options) {
  std::string folder = options.list.folder;
  if (!options.list.from_folder) peek_option("-enumdir", folder, options.unread);
  return !folder.empty() && lvportdir::is_plain_file(file) &&
         (lvportdir::lies_below(file, folder) ||
          is_linked_below(file, folder, options.list.num_subdirs));
}

/// True if a file stands there that is evidence by its first bytes, whoever named it: a hive or a
/// raw value that a list brings, or a file that a virtual disk needs and nobody has named.
bool looks_like_evidence(const std::string& file, const run_options& options) {
  constexpr size_t first_entry_end = 4096;  // in every layout
  std::vector<uint8_t> start;
  if (!uni::read_whole(start, without_stream_name(file), first_entry_end)) return false;
  const byte_view view(start);
  detected_shim unused;
  const bool takes_raw_values =
      options.road == run_road::pipe_binary || peek_flag("-pipe_binary", options.unread);
  return view.text_at(0, "regf") || view.text_at(0, "KDMV") ||
         (takes_raw_values && detect_shim_layout(view, unused));
}

bool is_standard_input(const std::string& file, const run_options& /*options*/) {
  return lvportdir::is_standard_input(file);
}

struct spared_file {
  bool (*applies)(const std::string& file, const run_options& options);
  const char* reason;
};

constexpr spared_file spared_files[] = {
    {is_source, "it is, or lies behind, a source of this run"},
    {is_unread_argument, "an argument that no option took names it"},
    {is_standard_input, "it is the standard input"},
    {is_in_walked_folder, "it lies in the folder of -enumdir"},
    {looks_like_evidence, "it begins like evidence"},
};

}  // namespace

std::string reason_to_spare(const std::string& path, const run_options& options) {
  if (lvportdir::is_pipe(path)) return {};
  const std::string file = as_written(without_trailing_separators(path));
  for (const spared_file& spared : spared_files) {
    if (spared.applies(file, options)) return spared.reason;
  }
  return {};
}

}  // namespace ovrik
