#include "hive/reg_query.h"

#include <span>

#include "base/text.h"
#include "hive/control_sets.h"
#include "hive/hive_root.h"
#include "hive/reg_key.h"
#include "hive/reg_value.h"

namespace ovrik {

namespace {

/// How much more than the whole hive all values of a key may hold. Values that share their data
/// would otherwise ask for any amount of memory and time.
constexpr uint64_t overlapping_bytes = 0x10000000;

using segment_span = std::span<const std::string>;

/// Walks from the root along all segments but the first, which names the hive. False: a key is
/// missing, or the subkeys of the key reached cannot be listed.
bool reach_key(const reg_hive& hive, segment_span segments, reg_key& key) {
  std::string hive_name;
  if (!find_root(hive, key.nk_offset, hive_name)) return false;
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
  const uint64_t most_bytes = uint64_t{hive.size()} + overlapping_bytes;
  uint64_t total_bytes = 0;
  bool any_value = false;
  const bool has_values = enum_values(hive, key.nk_offset, [&](const reg_value& value) {
    any_value = true;
    if (name != nullptr && !equal_ignoring_case(value.name(), *name)) return true;
    value_bytes bytes;
    if (!read_value_data(hive, value, bytes)) return true;
    total_bytes += bytes.data.size() + bytes.slack.size();
    hits.push_back({key.last_write_time, std::move(bytes.data), std::move(bytes.slack)});
    return total_bytes <= most_bytes;
  });
  // A key whose value list leads nowhere counts as found, without data.
  if (has_values && !any_value && name == nullptr) hits.push_back({key.last_write_time, {}, {}});
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
