#include "driver/logged_hive.h"

#include <algorithm>
#include <map>
#include <utility>

#include "driver/cache_places.h"
#include "hive/control_sets.h"
#include "hive/hive_root.h"
#include "hive/reg_query.h"
#include "shim/shim_parse.h"

namespace ovrik {

namespace {

// In the order of the enumerations.
constexpr const char* kind_words[] = {"no log", "dirty pages", "entries"};
constexpr const char* standing_words[] = {
    "applied",         "not needed, the hive is clean", "empty",        "damaged",
    "of another hive", "older than the hive",           "behind a gap", "superseded"};
constexpr const char* end_words[] = {"nothing to read",  "no more entries", "an older entry",
                                     "bad entry header", "bad entry size",  "bad page",
                                     "bad hash",         "cut short",       "cannot be read"};

template <size_t count, typename number>
const char* word_of(const char* const (&words)[count], number value) {
  return words[std::min(static_cast<size_t>(value), count - 1)];
}

/// The caches of a hive by control set and key.
using cache_map = std::map<std::string, std::vector<uint8_t>>;

struct hive_caches {
  bool has_control_sets = false;
  cache_map caches;
};

hive_caches caches_of(const reg_hive* hive) {
  hive_caches found;
  if (hive == nullptr || !is_system_hive(*hive)) return found;
  read_allowance allowance(hive->size());
  std::vector<reg_key> sets;
  found.has_control_sets = list_control_sets(*hive, allowance, sets);
  for (const reg_key& set : sets) {
    for (const cache_place& place : cache_places) {
      const std::string name = set.name.text() + '\\' + std::string(place.path[2]);
      query_values(*hive, set.nk_offset, place.path, allowance, [&](const reg_hit& hit) {
        found.caches.emplace(name, hit.data.copy());  // of several values the first counts
      });
    }
  }
  return found;
}

bool lacks_any_of(const hive_caches& logged, const hive_caches& stored) {
  return std::any_of(stored.caches.begin(), stored.caches.end(),
                     [&](const auto& cache) { return logged.caches.count(cache.first) == 0; });
}

/// The entries of a cache, each by its time and path, with how often it is there.
std::map<std::pair<uint64_t, std::string>, int> entries_of(const std::vector<uint8_t>& cache) {
  std::map<std::pair<uint64_t, std::string>, int> entries;
  shim_cache_results results;
  if (!cache.empty()) parse_shim_cache(results, byte_view(cache), 0, false);
  for (const shim_step& step : results.steps()) {
    const shim_cache_entry entry = results.entry_at(step);
    ++entries[{entry.modified_time, path_raw(entry)}];
  }
  return entries;
}

/// How many entries of `left` are not in `right`.
size_t only_in(const std::map<std::pair<uint64_t, std::string>, int>& left,
               const std::map<std::pair<uint64_t, std::string>, int>& right) {
  size_t count = 0;
  for (const auto& [entry, times] : left) {
    const auto other = right.find(entry);
    const int there = other == right.end() ? 0 : other->second;
    if (times > there) count += static_cast<size_t>(times - there);
  }
  return count;
}

void tell_differences(const hive_caches& logged, const hive_caches& stored, diagnostics_log& log) {
  for (const auto& [name, cache] : logged.caches) {
    const auto other = stored.caches.find(name);
    const auto with = entries_of(cache);
    const auto without =
        entries_of(other == stored.caches.end() ? std::vector<uint8_t>() : other->second);
    diag_printf(log, "logs: %s: %zu entries only with the logs, %zu only without them",
                name.c_str(), only_in(with, without), only_in(without, with));
  }
}

void tell_logs(const hive_replay& replay, const found_logs& logs, const hive_opening& opening) {
  for (size_t i = 0; i < replay.logs.size() && i < logs.names.size(); ++i) {
    const log_report& report = replay.logs[i];
    const std::string& name = logs.names[i];
    diag_printf(opening.log,
                "log %s: %s, %s: %zu entries and %zu pages applied, %zu entries older, sequence "
                "0x%x to 0x%x, end: %s",
                name.c_str(), word_of(kind_words, report.kind),
                word_of(standing_words, report.standing), report.entries_applied,
                report.pages_applied, report.entries_stale, report.first_sequence,
                report.last_sequence, word_of(end_words, report.end));
    const uint64_t length = logs.sources[i].length;
    if (report.unreadable_bytes != 0 && report.unreadable_bytes <= length) {
      opening.faults.add(name, length - report.unreadable_bytes, report.unreadable_bytes);
    }
  }
}

}  // namespace

std::unique_ptr<reg_hive> open_with_logs(const hive_opener& open, const found_logs& logs,
                                         const hive_opening& opening) {
  if (logs.sources.empty()) {
    diag_printf(opening.log, "logs: none found");
    return open({});
  }
  auto hive = open(logs.sources);
  if (hive != nullptr) {
    tell_logs(hive->replay(), logs, opening);
    if (!hive->replay().changes()) return hive;
  } else {
    for (const std::string& name : logs.names) {
      diag_printf(opening.log, "log %s: the hive does not open with its logs", name.c_str());
    }
  }
  // One hive at a time is in use: each look at one is over before the next one opens.
  const hive_caches logged = caches_of(hive.get());
  const bool hive_opens = hive != nullptr;
  hive.reset();
  auto stored_hive = open({});
  const hive_caches stored = caches_of(stored_hive.get());
  const bool worse = stored_hive != nullptr && stored.has_control_sets &&
                     (!logged.has_control_sets || lacks_any_of(logged, stored));
  if (hive_opens && !worse) {
    tell_differences(logged, stored, opening.log);
    stored_hive.reset();
    return open(logs.sources);
  }
  if (stored_hive != nullptr) {
    diag_printf(opening.log, "logs: not applied, %s with them: the hive is read as stored",
                logged.has_control_sets ? "a cache is missing" : "there is no control set");
  }
  return stored_hive;
}

}  // namespace ovrik
