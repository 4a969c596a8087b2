#include "driver/evidence_guard.h"

#include <cstdio>

#include "base/text.h"
#include "driver/path_variables.h"
#include "sources/lv_portable_dir.h"

namespace ovrik {

namespace {

/// True if an argument names the file, be it as a path, with variables or within a list.
bool names_file(const std::string& argument, const std::string& path) {
  std::string list = argument;
  for (const char separator : {',', ';'}) replace_all(list, separator, '|');
  for (const std::string& piece : split(list, '|')) {
    std::string name = trim(piece);
    remove_all(name, '"');
    if (lvportdir::same_file(path, name)) return true;
  }
  return lvportdir::same_file(path, argument) ||
         lvportdir::same_file(path, expand_path_variables(argument));
}

}  // namespace

bool is_free_of_evidence(const std::string& path, const argument_list& args) {
  // Which arguments are sources is known only when all options have been read. Any file that is
  // named is too many.
  for (size_t i = 1; i < args.size(); ++i) {
    if (!names_file(args[i], path)) continue;
    std::fprintf(stderr, "prob opening file %s for output, aborting\n", path.c_str());
    return false;
  }
  return true;
}

}  // namespace ovrik
