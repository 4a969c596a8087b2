#include "driver/hive_road.h"

#include <vector>

#include "driver/console.h"
#include "driver/hive_source.h"
#include "driver/registry_commands.h"

namespace ovrik {

int32_t run_hive_road(cmdline_options& options, std::ostream& out) {
  if (options.source_path.empty()) return -1;
  std::string kind_name;
  const auto hive = open_hive_source(options.source_path, kind_name);
  if (hive == nullptr) {
    print_problem("Problem opening %s\n", options.source_path.c_str());
    return -1;
  }
  if (!is_system_hive(kind_name)) return -1;
  options.hive_location = options.source_path;
  std::vector<registry_command> commands = build_shim_commands_current(options.source_path);
  if (options.all_controlsets && !build_shim_commands_all(commands, *hive, options.source_path)) {
    return -1;
  }
  if (run_registry_commands(commands, out, *hive, options) == 0) {
    print_problem("probs parsing from %s\n", options.hive_location.c_str());
    return -1;
  }
  return 0;
}

}  // namespace ovrik
