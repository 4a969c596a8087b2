// Fuzz entry of the hive reader: opens the input as a hive and asks for both cache keys. The live
// checks of the reader are answers here, not findings.

#include <cstdlib>
#include <string>
#include <string_view>
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
  ovrik::read_allowance allowance(hive.size());
  std::vector<ovrik::reg_key> sets;
  list_control_sets(hive, allowance, sets);
  ovrik::reg_key current;
  if (!resolve_current_control_set(hive, allowance, current)) return;
  size_t handed_out = 0;
  for (const std::string_view key : {"AppCompatibility", "AppCompatCache"}) {
    const std::string_view segments[] = {"Control", "Session Manager", key, "AppCompatCache"};
    query_values(hive, current.nk_offset, segments, allowance, [&](const ovrik::reg_hit& hit) {
      if (hit.data.size() > hit.data_and_slack.size()) std::abort();
      handed_out += hit.data_and_slack.size();
    });
  }
  if (handed_out > size + 0x1000000) std::abort();
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
