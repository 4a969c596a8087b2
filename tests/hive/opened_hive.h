// A hive as the tests of its reader see it: opened from bytes and asked by path.

#pragma once

#include <gtest/gtest.h>

#include <sstream>

#include "base/text.h"
#include "hive/control_sets.h"
#include "hive/reg_clas.h"
#include "hive/reg_query.h"
#include "sources/host/file_source.h"
#include "support/system_hive.h"
#include "support/temp_dir.h"

namespace test_support {

/// An offset that leads out of every hive of the tests.
constexpr uint32_t nowhere = 0x40000000;

/// A hive file, and what of it could not be read.
struct hive_file {
  explicit hive_file(const std::string& path)
      : hive({ovrik::open_file_source(path), path}, ovrik::limits_of_hive_files, faults, ok) {}

  bool ok = false;
  ovrik::read_faults faults;
  ovrik::reg_hive hive;
};

struct opened_hive {
  explicit opened_hive(const bytes& image)
      : file((write_file(folder.path("hive"), image), folder.path("hive"))) {}

  temp_dir folder;
  hive_file file;
  bool& ok = file.ok;
  ovrik::reg_hive& hive = file.hive;
};

/// A copy of a hit's bytes.
struct hit {
  uint64_t last_write_time = 0;
  bytes data;
  bytes slack;
};

/// The hits of a path below the root, within an allowance; a first segment "CurrentControlSet"
/// stands for the current control set.
inline std::vector<hit> query(const ovrik::reg_hive& hive, const std::string& path,
                              ovrik::read_allowance& allowance) {
  ovrik::reg_key start{.nk_offset = hive.root_offset()};
  std::vector<std::string> texts;
  std::istringstream rest(path);
  for (std::string segment; std::getline(rest, segment, '\\');) texts.push_back(segment);
  std::vector<hit> hits;
  if (ovrik::equal_ignoring_case(texts.front(), "CurrentControlSet")) {
    if (!resolve_current_control_set(hive, allowance, start)) return hits;
    texts.erase(texts.begin());
  }
  const std::vector<std::string_view> segments(texts.begin(), texts.end());
  const bool found =
      query_values(hive, start.nk_offset, segments, allowance, [&hits](const ovrik::reg_hit& it) {
        hits.push_back(
            {it.last_write_time, it.data.copy(), it.data_and_slack.from(it.data.size()).copy()});
      });
  EXPECT_EQ(found, !hits.empty());
  return hits;
}

/// The same with an allowance of its own.
inline std::vector<hit> query(const ovrik::reg_hive& hive, const std::string& path) {
  ovrik::read_allowance allowance(hive.size());
  return query(hive, path, allowance);
}

/// The data of all hits, each with a blank behind it; long ones as their length.
inline std::string queried(const bytes& image, const std::string& path) {
  std::string text;
  for (const hit& it : query(opened_hive(image).hive, path)) {
    text += (it.data.size() < 12 ? as_text(it.data) : std::to_string(it.data.size())) + " ";
  }
  return text;
}

}  // namespace test_support
