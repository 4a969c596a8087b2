#include "driver/options/evidence_guard.h"

#include <algorithm>
#include <vector>

#include "base/byte_view.h"
#include "base/text.h"
#include "driver/host/console.h"
#include "driver/options/path_variables.h"
#include "shim/shim_detect.h"
#include "sources/host/fileio.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

/// True if an argument names the file, be it as a path, with variables or within a list.
bool names_file(const std::string& argument, const std::string& path) {
  for (const std::string& part : list_parts(argument)) {
    if (lvportdir::same_file(path, part)) return true;
  }
  return lvportdir::same_file(path, argument) ||
         lvportdir::same_file(path, expand_path_variables(argument));
}

/// True if a file stands there that is evidence by its first bytes, whoever named it: a hive or a
/// raw value that a list brings, or a file that a virtual disk needs and nobody has named.
bool looks_like_evidence(const std::string& path, const argument_list& args) {
  constexpr size_t first_entry_end = 4096;  // in every layout
  std::vector<uint8_t> start;
  if (!uni::read_whole(start, without_stream_name(path), first_entry_end)) return false;
  const byte_view view(start);
  detected_shim unused;
  return view.text_at(0, "regf") || view.text_at(0, "KDMV") ||
         (peek_flag("-pipe_binary", args) && detect_shim_layout(view, unused));
}

}  // namespace

bool is_free_of_evidence(const std::string& path, const argument_list& args) {
  if (lvportdir::is_pipe(path)) return true;
  // Which arguments are sources is known only when all options have been read. Any file that is
  // named is too many.
  const std::string file = as_written(without_trailing_separators(path));
  const bool named =
      std::any_of(args.begin() + 1, args.end(),
                  [&file](const std::string& argument) { return names_file(argument, file); });
  if (!named && !looks_like_evidence(file, args)) return true;
  print_message("prob opening file %s for output, aborting\n", path.c_str());
  return false;
}

}  // namespace ovrik
