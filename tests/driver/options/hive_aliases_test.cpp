// Other names for hives.
#include "driver/options/hive_aliases.h"

#include <gtest/gtest.h>

namespace {

using namespace ovrik;

TEST(hive_aliases, stand_for_whole_paths_before_parts) {
  struct {
    const char *name, *files, *parts, *path, *shown;
  } const rows[] = {
      {"without regard to case", "C:\\Case\\SYSTEM|one", "", "c:\\case\\System", "one"},
      {"first of two pairs", "/a|one|/A|two", "", "/a", "one"},
      {"a hit ends it", "/x/y|/x/z", "/x|q", "/x/y", "/x/z"},
      {"part of parts", "", "/b|two|/a|one", "/a/b/c", "onetwo/c"},
      {"part as long as the path", "", "/mnt|disk", "/mnt", "/mnt"},
      {"ends of parts", "", "E:\\|\"Disk 1\"\\", "E:\\SYSTEM", "Disk 1\\SYSTEM"},
      {"lone part", "", "/mnt\\", "/mnt/SYSTEM", "*/SYSTEM"},
  };
  for (const auto& row : rows) {
    hive_aliases aliases;
    std::string words;
    EXPECT_TRUE(*row.files == 0 || add_file_aliases(aliases, row.files, words)) << row.name;
    EXPECT_TRUE(*row.parts == 0 || add_path_aliases(aliases, row.parts, words)) << row.name;
    EXPECT_EQ(row.shown, aliases.shown(row.path)) << row.name;
  }
}

}  // namespace
