// A hive as the tests of its reader see it: opened from bytes and asked by path.

#pragma once

#include <gtest/gtest.h>

#include <sstream>

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

/// The hits of a path below the root.
inline std::vector<ovrik::reg_hit> query(const ovrik::reg_hive& hive, const std::string& path) {
  std::vector<std::string> segments = {"System"};
  std::istringstream rest(path);
  for (std::string segment; std::getline(rest, segment, '\\');) segments.push_back(segment);
  std::vector<ovrik::reg_hit> hits(1);
  const bool found = query_values(hive, segments, hits);
  EXPECT_EQ(found, !hits.empty());
  return hits;
}

/// The data of all hits, each with a blank behind it; long ones as their length.
inline std::string queried(const bytes& image, const std::string& path) {
  std::string text;
  for (const ovrik::reg_hit& hit : query(opened_hive(image).hive, path)) {
    text += (hit.data.size() < 12 ? as_text(hit.data) : std::to_string(hit.data.size())) + " ";
  }
  return text;
}

}  // namespace test_support
