#include "hive/reg_query.h"

#include <span>

#include "base/text.h"
#include "hive/control_sets.h"
#include "hive/reg_key.h"
#include "hive/reg_value.h"

namespace ovrik {

namespace {

using segment_span = std::span<const std::string>;

/// Walks from the root along all segments but the first, which names the hive. False: a key is
/// missing, or the subkeys of the key reached cannot be listed.
bool reach_key(const reg_hive& hive, segment_span segments, reg_key& key) {
  std::string hive_name;
  if (!hive.get_root(key.nk_offset, hive_name)) return false;
  for (size_t i = 1; i < segments.size(); ++i) {
    const bool current = i == 1 && equal_ignoring_case(segments[i], "CurrentControlSet");
    const bool found = current ? resolve_current_control_set(hive, key)
                               : find_subkey(hive, key.nk_offset, segments[i], key);
    if (!found) return false;
  }
  std::vector<reg_key> subkeys;
  return enum_subkeys(hive, key.nk_offset, subkeys);
}

/// Appends the values of a key; with a `name` only those that bear it.
void collect_values(const reg_hive& hive, const reg_key& key, const std::string* name,
                    std::vector<reg_hit>& hits) {
  std::vector<reg_value> values;
  if (!enum_values(hive, key.nk_offset, values)) return;
  // A key whose value list leads nowhere counts as found, without data.
  if (values.empty() && name == nullptr) hits.push_back({key.last_write_time, {}, {}});
  size_t total_bytes = 0;
  for (const reg_value& value : values) {
    if (name != nullptr && !equal_ignoring_case(value.name(), *name)) continue;
    value_bytes bytes;
    if (!read_value_data(hive, value, bytes)) continue;
    total_bytes += bytes.data.size() + bytes.slack.size();
    if (total_bytes > hive.size()) return;
    hits.push_back({key.last_write_time, std::move(bytes.data), std::move(bytes.slack)});
  }
}

}  // namespace

bool query_values(const reg_hive& hive, const std::vector<std::string>& segments,
                  std::vector<reg_hit>& hits) {
  hits.clear();
  if (segments.empty()) return false;
  const segment_span path = segments;
  const segment_span parent = path.first(path.size() - 1);
  reg_key key;
  if (reach_key(hive, path, key)) {
    collect_values(hive, key, nullptr, hits);
  } else if (reach_key(hive, parent, key)) {
    collect_values(hive, key, &segments.back(), hits);
  }
  return !hits.empty();
}

}  // namespace ovrik
