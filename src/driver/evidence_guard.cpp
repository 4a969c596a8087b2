#include "driver/evidence_guard.h"

#include <cstdio>

#include "driver/path_variables.h"
#include "sources/lv_portable_dir.h"

namespace ovrik {

namespace {

constexpr const char* source_options[] = {"-hive", "-extract", "-binary"};

}  // namespace

bool is_free_of_evidence(const std::string& path, const argument_list& args) {
  for (const char* option : source_options) {
    std::string source;
    if (!peek_option(option, source, args)) continue;
    if (!lvportdir::same_file(path, source) &&
        !lvportdir::same_file(path, expand_path_variables(source))) {
      continue;
    }
    std::fprintf(stderr, "prob opening file %s for output, aborting\n", path.c_str());
    return false;
  }
  return true;
}

}  // namespace ovrik
