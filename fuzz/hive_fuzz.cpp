// Fuzz entry of the hive reader: opens the input as a hive and asks for both cache keys. The live
// checks of the reader are answers here, not findings.

#include <cstdlib>
#include <string>
#include <vector>

#include "hive/control_sets.h"
#include "hive/hive_root.h"
#include "hive/reg_assert.h"
#include "hive/reg_query.h"
#include "memory_file.h"
#include "sources/host/file_source.h"

namespace {

struct failed_check {};

void read_all(const std::string& path, size_t size) {
  bool ok = false;
  ovrik::read_faults faults;
  const ovrik::reg_hive hive({ovrik::open_file_source(path), path}, ovrik::limits_of_hive_files,
                             faults, ok);
  uint32_t root = 0;
  std::string name;
  if (find_root(hive, root, name) != hive.usable()) std::abort();
  std::vector<std::string> sets;
  list_control_sets(hive, sets);
  for (const char* key : {"AppCompatibility", "AppCompatCache"}) {
    std::vector<ovrik::reg_hit> hits;
    query_values(
        hive, {"System", "CurrentControlSet", "Control", "Session Manager", key, "AppCompatCache"},
        hits);
    for (const ovrik::reg_hit& hit : hits) {
      if (hit.data.size() > size || hit.slack.size() > size) std::abort();
    }
  }
}

}  // namespace

// Stands in for the library's, which ends the program.
void ovrik::reg_assert_failed(const char*, unsigned) { throw failed_check(); }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const memory_file hive(ovrik::byte_view(data, size));
  try {
    read_all(hive.path(), size);
  } catch (const failed_check&) {
  }
  return 0;
}
