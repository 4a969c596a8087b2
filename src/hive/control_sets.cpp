#include "hive/control_sets.h"

#include <algorithm>

#include "base/text.h"
#include "hive/hive_root.h"
#include "hive/reg_value.h"

namespace ovrik {

namespace {

constexpr std::string_view control_set_prefix = "controlset";

/// The name of the control set whose number stands in the value "Current" of the Select key. False:
/// there is no such value.
bool current_name(const reg_hive& hive, uint32_t select_offset, std::string& name) {
  reg_value current;
  if (!find_value(hive, select_offset, "Current", current)) return false;
  name = "ControlSet00" + std::to_string(static_cast<int32_t>(current.data_position));
  return true;
}

bool is_control_set(const std::string& lower_name) {
  return lower_name.size() > control_set_prefix.size() &&
         lower_name.starts_with(control_set_prefix);
}

}  // namespace

bool resolve_current_control_set(const reg_hive& hive, reg_key& key) {
  uint32_t root_offset = 0;
  std::string hive_name;
  reg_key select;
  std::string name;
  return find_root(hive, root_offset, hive_name) &&
         find_subkey(hive, root_offset, "Select", select) &&
         current_name(hive, select.nk_offset, name) && find_subkey(hive, root_offset, name, key);
}

bool list_control_sets(const reg_hive& hive, std::vector<std::string>& names) {
  names.clear();
  uint32_t root_offset = 0;
  std::string hive_name;
  std::vector<reg_key> keys;
  if (!find_root(hive, root_offset, hive_name) || !enum_subkeys(hive, root_offset, keys)) {
    return false;
  }
  const reg_key* select = nullptr;
  for (const reg_key& key : keys) {
    const std::string name = key.name.text();
    const std::string lower_name = lower_ascii(name);
    if (lower_name == "select") {
      if (select == nullptr) select = &key;
    } else if (is_control_set(lower_name)) {
      names.push_back(name);
    }
  }
  std::string default_name;
  if (select == nullptr || names.empty() || !current_name(hive, select->nk_offset, default_name)) {
    names.clear();
    return false;
  }
  const auto current = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
    return equal_ignoring_case(name, default_name);
  });
  if (current != names.end()) std::rotate(names.begin(), current, current + 1);
  return true;
}

}  // namespace ovrik
