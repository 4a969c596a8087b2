#include "hive/reg_query.h"

#include "hive/reg_key.h"
#include "hive/reg_value.h"

namespace ovrik {

namespace {

/// Visits the values of a key; with a `name` only those that bear it. False: there are none.
bool visit_values(const reg_hive& hive, const reg_key& key, const std::string_view* name,
                  read_allowance& allowance, const hit_visitor& visit) {
  bool any_value = false;
  bool any_hit = false;
  const auto visit_hit = [&](const value_bytes& bytes) {
    any_hit = true;
    visit({key.last_write_time, bytes.data, bytes.data_and_slack});
  };
  const bool has_values = enum_values(hive, key.nk_offset, allowance, [&](const reg_value& value) {
    any_value = true;
    if (name != nullptr && !value.is_named(*name)) return true;
    value_bytes bytes;
    if (read_value_data(hive, value, allowance, bytes)) visit_hit(bytes);
    return true;
  });
  // A key whose value list leads nowhere counts as found, without data.
  if (has_values && !any_value && name == nullptr) visit_hit({});
  return any_hit;
}

}  // namespace

bool query_values(const reg_hive& hive, uint32_t nk_offset, std::span<const std::string_view> path,
                  read_allowance& allowance, const hit_visitor& visit) {
  if (path.empty()) return false;
  reg_key parent{.nk_offset = nk_offset};
  for (const std::string_view segment : path.first(path.size() - 1)) {
    if (!find_subkey(hive, parent.nk_offset, segment, allowance, parent)) return false;
  }
  reg_key key;
  bool is_key = false;
  const auto take_if_last = [&](const reg_key& subkey) {
    if (is_key || !is_named(subkey, path.back())) return;
    key = subkey;
    is_key = true;
  };
  // Neither a key nor the one in front of it counts whose subkeys cannot be listed.
  if (!enum_subkeys(hive, parent.nk_offset, allowance, take_if_last)) return false;
  if (is_key && enum_subkeys(hive, key.nk_offset, allowance, [](const reg_key&) {})) {
    return visit_values(hive, key, nullptr, allowance, visit);
  }
  return visit_values(hive, parent, &path.back(), allowance, visit);
}

}  // namespace ovrik
