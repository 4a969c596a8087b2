#include "driver/hive_aliases.h"

#include <gtest/gtest.h>

namespace {

TEST(hive_aliases, stand_for_whole_paths_before_parts) {
  struct {
    const char *name, *files, *parts, *path, *shown;
  } const rows[] = {
      {"without regard to case", "C:\\Case\\SYSTEM|one", "", "c:\\case\\System", "one"},
      {"first of two pairs", "/a|one|/A|two", "", "/a", "one"},
      {"a hit ends it", "/x/y|/x/z", "/x|q", "/x/y", "/x/z"},
      {"part", "", "/mnt|disk", "/mnt/SYSTEM", "disk/SYSTEM"},
      {"part of parts", "", "/b|two|/a|one", "/a/b/c", "onetwo/c"},
      {"part as long as the path", "", "/mnt|disk", "/mnt", "/mnt"},
      {"ends of parts", "", "E:\\|\"Disk 1\"\\", "E:\\SYSTEM", "Disk 1\\SYSTEM"},
      {"lone part", "", "/mnt\\", "/mnt/SYSTEM", "*/SYSTEM"},
  };
  for (const auto& row : rows) {
    ovrik::row_settings settings;
    settings.hive_location = row.path;
    EXPECT_TRUE(*row.files == 0 || ovrik::add_file_aliases(settings, row.files)) << row.name;
    EXPECT_TRUE(*row.parts == 0 || ovrik::add_path_aliases(settings, row.parts)) << row.name;
    EXPECT_EQ(row.shown, ovrik::aliased_hive_location(settings)) << row.name;
  }
}

}  // namespace
