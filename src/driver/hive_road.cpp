#include "driver/hive_road.h"

#include <memory>
#include <vector>

#include "driver/hive_source.h"
#include "driver/host/console.h"
#include "driver/registry_commands.h"
#include "driver/volume_source.h"

namespace ovrik {

namespace {

/// A hive to read and where in its container it lies.
struct opened_source {
  std::unique_ptr<reg_hive> hive;
  std::string inner_path;
};

opened_source open_source(cmdline_options& options) {
  const std::string& path = options.source_path;
  volume_place place = {options.volume_offset, default_hive_path, options};
  if (options.image_mode) return {open_image_hive(path, place), place.inner_path};
  if (options.livesys_mode) return {open_live_hive(path, place), place.inner_path};
  if (options.vss_mode) return {open_shadow_copy_hive(path, place), path + place.inner_path};
  return {open_hive_source(path, options), path};
}

}  // namespace

bool print_hive(cmdline_options& options, std::ostream& out, const reg_hive& hive) {
  options.hive_location = options.source_path;
  std::vector<registry_command> commands = build_shim_commands_current(options.source_path);
  if (options.all_controlsets && !build_shim_commands_all(commands, hive, options.source_path)) {
    return false;
  }
  if (run_registry_commands(commands, out, hive, options) == 0) {
    print_problem("probs parsing from %s\n", options.hive_location.c_str());
    return false;
  }
  return true;
}

int32_t run_hive_road(cmdline_options& options, std::ostream& out) {
  if (options.source_path.empty()) return -1;
  const auto [hive, inner_path] = open_source(options);
  if (hive == nullptr) {
    print_problem("Problem opening %s\n", inner_path.c_str());
    return -1;
  }
  return is_system_hive(*hive) && print_hive(options, out, *hive) ? 0 : -1;
}

}  // namespace ovrik
