// The way along a path, through directories that no system writes.
#include "sources/ntfs/ntfs_path.h"

#include <gtest/gtest.h>

#include "support/hive_volume.h"

namespace test_support {
namespace {

TEST(ntfs_path, a_path_leads_to_the_file_that_bears_the_name_there) {
  ntfs_builder built = sound_volume();
  const std::pair<std::string, std::string> paths[] = {
      {"C:\\Windows\\System32\\CONFIG\\SYSTEM", "the hive"},
      {"/windows//system32/config/system/", "the hive"},
      {"windows\\ system32 \\config\\System:stream", "the hive"},
      {"\\windows\\system32\\config\\systems", "not found"},
      {"\\windows/system32", "not found"},
  };
  for (const auto& [path, content] : paths) EXPECT_EQ(content_of(built, {}, path), content) << path;

  // Blocks that the tree has abandoned are listed; a name in another directory is the second
  // choice, a record that is not in use the third, and a name for DOS none at all.
  const bytes list = list_attribute({list_entry(0xA0, 12, 1, 1), list_entry(0xA0, 20, 9, 2)});
  built.record(12, {directory_name, list, index_attribute({}), index_piece({0x11, 4, 60}, 0, 1)});
  built.record(20, {index_piece({0x11, 1, 70, 0x11, 3, 10}, 4, 2)}, 1, 1, 12);
  built.cluster(60, index_block({16, 17}));
  const bytes block = index_block({15, 14, 13});
  built.cluster(70, bytes(block.begin(), block.begin() + 1024));
  built.cluster(80, bytes(block.begin() + 1024, block.end()));
  built.record(13, {name_attribute(u"system", 9), data_attribute("else")});
  built.record(14, {hive_name, data_attribute("deleted")}, 2, 0);
  built.record(15, {hive_name, data_attribute("the hive")});
  built.record(16, {name_attribute(u"SYSTEM", 12, 2), data_attribute("dos")});
  const std::pair<const char*, uint64_t> choices[] = {
      {"the hive", 15}, {"deleted", 14}, {"else", 13}};
  for (const auto& [content, record] : choices) {
    EXPECT_EQ(content_of(built), content);
    put(built.volume, ntfs_builder::record_at(record), as_bytes("BAAD"));
  }
  EXPECT_EQ(content_of(built), "not found");

  // An index whose middle is lost: the block behind the gap begins within a block's length.
  built.record(13, {hive_name, data_attribute("the hive")});
  bytes start = index_piece({0x11, 2, 60}, 0, 1);
  put_u64(start, 40, 12 * 1024);
  const bytes rest = list_attribute({list_entry(0xA0, 20, 1, 2)});
  built.record(12, {directory_name, rest, index_attribute({}), start});
  built.record(20, {index_piece({0x11, 1, 69, 0x11, 1, 1, 0x11, 3, 10}, 7, 2)}, 1, 1, 12);
  EXPECT_EQ(content_of(built), "the hive");
}

TEST(ntfs_path, the_index_says_whom_to_ask_and_the_records_decide) {
  ntfs_builder built;
  built.record(14, {hive_name, data_attribute("14")});
  built.record(15, {hive_name, data_attribute("15")});
  built.record(16, {hive_name, data_attribute("16")}, 2, 0);
  built.record(17, {name_attribute(u"system", 9), data_attribute("17")});
  built.record(18, {name_attribute(u"else"), data_attribute("18")});
  const std::pair<named_children, const char*> indexes[] = {
      {{{18, u"else"}, {15, u"SYSTEM"}}, "15"},
      {{{15, u"System"}, {14, u"SYSTEM"}}, "14"},                    // the lower number
      {{{16, u"system"}, {15, u"else"}, {17, u"x"}}, "15"},          // not in use
      {{{18, u"system"}, {17, u"system"}, {15, u"systems"}}, "15"},  // other names
      {{{99, u"system"}, {12, u"system"}, {17, u""}}, "17"},         // no record, the folder
      {{{18, u"system"}}, "not found"},
  };
  for (const auto& [index, content] : indexes) {
    built.record(12, {directory_name, named_index_attribute(index)});
    EXPECT_EQ(content_of(built), content);
  }
}

}  // namespace
}  // namespace test_support
