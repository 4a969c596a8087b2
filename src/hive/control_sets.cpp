#include "hive/control_sets.h"

#include <algorithm>
#include <string>

#include "base/text.h"
#include "hive/reg_value.h"

namespace ovrik {

namespace {

constexpr std::string_view control_set_prefix = "controlset";
constexpr std::string_view select_name = "select";

/// The name of the control set whose number stands in the value "Current" of the Select key. False:
/// there is no such value.
bool current_name(const reg_hive& hive, uint32_t select_offset, read_allowance& allowance,
                  std::string& name) {
  reg_value current;
  if (!find_value(hive, select_offset, "Current", allowance, current)) return false;
  name = "ControlSet00" + std::to_string(static_cast<int32_t>(current.data_position));
  return true;
}

bool is_control_set(const reg_key& key) {
  const size_t length = control_set_prefix.size();
  return key.name.size() > length &&
         equal_ignoring_case(key.name.clip(0, length).text(), control_set_prefix);
}

}  // namespace

bool resolve_current_control_set(const reg_hive& hive, read_allowance& allowance, reg_key& key) {
  reg_key select;
  std::string name;
  return hive.usable() && find_subkey(hive, hive.root_offset(), select_name, allowance, select) &&
         current_name(hive, select.nk_offset, allowance, name) &&
         find_subkey(hive, hive.root_offset(), name, allowance, key);
}

bool list_control_sets(const reg_hive& hive, read_allowance& allowance,
                       std::vector<reg_key>& keys) {
  keys.clear();
  reg_key select;
  bool has_select = false;
  std::vector<bool> seen(hive.size());
  const bool listed = enum_subkeys(hive, hive.root_offset(), allowance, [&](const reg_key& key) {
    if (!has_select && is_named(key, select_name)) {
      select = key;
      has_select = true;
    } else if (is_control_set(key) && !seen[key.nk_offset]) {
      seen[key.nk_offset] = true;
      keys.push_back(key);
    }
  });
  std::string name;
  if (!listed || !has_select || keys.empty() ||
      !current_name(hive, select.nk_offset, allowance, name)) {
    keys.clear();
    return false;
  }
  const auto current = std::find_if(keys.begin(), keys.end(),
                                    [&](const reg_key& key) { return is_named(key, name); });
  if (current != keys.end()) std::rotate(keys.begin(), current, current + 1);
  return true;
}

}  // namespace ovrik
