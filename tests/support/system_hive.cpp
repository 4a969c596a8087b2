#include "support/system_hive.h"

#include <utility>

namespace test_support {
namespace {

hive_value number_value(std::string name, uint32_t number) {
  hive_value value{.name = std::move(name), .type = 4};  // REG_DWORD
  append_u32(value.data, number);
  return value;
}

}  // namespace

std::string control_set_name(uint32_t number) {
  const std::string digits = std::to_string(number);
  return "ControlSet" + std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits;
}

std::string cache_key_path(uint32_t number, bool old_key) {
  return control_set_name(number) + "\\Control\\Session Manager\\" +
         (old_key ? "AppCompatibility" : "AppCompatCache");
}

hive_builder system_hive(const std::vector<control_set>& sets, uint32_t current) {
  hive_builder hive;
  hive.root.at("Select").values = {number_value("Current", current),
                                   number_value("Default", current), number_value("Failed", 0),
                                   number_value("LastKnownGood", current)};
  hive.root.at("Setup").values = {number_value("SystemSetupInProgress", 0)};
  for (const control_set& set : sets) {
    hive.root.at(control_set_name(set.number) + "\\Services");
    hive_key& key = hive.root.at(cache_key_path(set.number, set.old_key));
    key.last_write = set.last_write;
    key.values.push_back({.name = "AppCompatCache", .data = set.cache});
    if (set.old_key) continue;
    key.values.push_back({.name = "CacheMainSdb", .data = bytes(28, 0x5A)});
    key.values.push_back({.name = "SdbTime", .data = bytes(32, 0)});
  }
  return hive;
}

hive_builder system_hive_with(bytes cache) {
  return system_hive({{.number = 1, .cache = std::move(cache)}}, 1);
}

}  // namespace test_support
