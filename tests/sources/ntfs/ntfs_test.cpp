// Records, run lists, directories and files of composed NTFS volumes, sound and damaged.
#include <gtest/gtest.h>

#include <memory>

#include "sources/ntfs/ntfs_file.h"
#include "sources/ntfs/ntfs_path.h"
#include "support/memory_disk.h"
#include "support/ntfs_builder.h"

namespace test_support {
namespace {

/// What the path leads to: the file's bytes as text, or why there are none.
std::string content_of(const ntfs_builder& built, std::set<uint64_t> bad = {},
                       const std::string& path = "\\windows\\system32\\config\\system") {
  ovrik::ntfs_volume volume(std::make_unique<memory_disk>(built.volume, std::move(bad)), 0);
  if (!volume.mount()) return "not mounted";
  ovrik::diagnostics_log log;
  uint64_t inode = 0;
  if (!lookup_path(volume, path, inode, log)) return "not found";
  uni::memory_block file;
  if (!read_file_by_inode(volume, inode, file, log)) return "not read";
  return std::string(reinterpret_cast<const char*>(file.data()), file.size());
}

bytes name_attribute(std::u16string_view name, uint64_t parent = 12, uint8_t name_space = 1) {
  return resident_attribute(0x30, file_name(parent, name, name_space));
}
const bytes directory_name = name_attribute(u"Config", 11);
const bytes hive_name = name_attribute(u"SyStem");

bytes data_attribute(const std::string& text, uint16_t id = 0) {
  return resident_attribute(0x80, as_bytes(text), {.id = id});
}

/// A piece of the index of a directory.
bytes index_piece(const bytes& runs, uint64_t vcn, uint16_t id, uint64_t size = 8192) {
  return non_resident_attribute(0xA0, runs,
                                {.id = id, .name = u"$I30", .first_vcn = vcn, .size = size});
}

bytes list_attribute(const std::vector<bytes>& entries) {
  return resident_attribute(0x20, concat(entries));
}

/// A volume whose hive is the words "the hive", in the record itself.
ntfs_builder sound_volume() {
  ntfs_builder built;
  built.record(13, {hive_name, data_attribute("the hive")});
  return built;
}

const std::string a(1024, 'a'), b(1024, 'b'), c(1024, 'c'), zeros(1024, 0);

TEST(ntfs_runs, run_lists_are_decoded_up_to_what_does_not_fit) {
  const std::pair<bytes, std::string> cases[] = {
      // vcn:lcn+count, "hole" in place of the lcn
      {{0x21, 2, 0, 1, 0x11, 3, 0xF0, 0x11, 1, 0x20, 0}, "7:256+2 9:240+3 12:272+1 "},
      {{0x11, 1, 9, 0x21, 1, 0xFF, 0xFF, 0}, "7:9+1 8:8+1 "},
      // Cluster 0 is one only in the first run; without an offset not even there.
      {{0x11, 4, 0, 0x11, 2, 5, 0x11, 2, 0, 0x01, 3, 0}, "7:0+4 11:5+2 13:hole+2 15:hole+3 "},
      {{0x01, 4, 0x11, 1, 6}, "7:hole+4 11:6+1 "},
      {{0x11, 1, 6, 0x21, 1, 6}, "7:6+1 "},
      {{0xFF, 1, 6}, ""},
      // Behind and in front of every volume.
      {{0x11, 1, 6, 0x81, 1, 0, 0, 0, 0, 0, 0, 0, 0x7F, 0}, "7:6+1 "},
      {{0x11, 1, 6, 0x11, 1, 0x80, 0}, "7:6+1 "},
      {{}, ""},
  };
  for (const auto& [runs, expected] : cases) {
    ovrik::cluster_extents extents;
    decode_run_list(extents, ovrik::byte_view(runs), 7);
    std::string text;
    for (const ovrik::cluster_extent& e : extents) {
      text += std::to_string(e.vcn) + ":" + (e.sparse ? "hole" : std::to_string(e.lcn)) + "+" +
              std::to_string(e.count) + " ";
    }
    EXPECT_EQ(text, expected) << testing::PrintToString(runs);
  }
}

TEST(ntfs_record, sector_ends_go_back_by_the_stride_that_the_count_implies) {
  struct fixup_case {
    const char *name, *mark;
    size_t size;
    uint16_t at, count;
    uint32_t sector;
    bool taken;
    size_t stride, mended;  // of the sector ends, and how many of them are put back
  };
  const fixup_case cases[] = {
      {"two sectors", "FILE", 1024, 48, 3, 512, true, 512, 2},
      {"steps of 512 on large sectors", "FILE", 4096, 48, 9, 4096, true, 512, 8},
      {"a step of 4096", "INDX", 4096, 40, 2, 4096, true, 4096, 1},
      {"a count that divides nothing", "FILE", 1024, 48, 4, 512, true, 512, 2},
      {"nothing to mend", "FILE", 1024, 48, 1, 512, true, 512, 0},
      {"the array elsewhere in a file record", "FILE", 1024, 42, 3, 512, false, 512, 0},
      {"the array elsewhere in an index block", "INDX", 4096, 400, 9, 512, true, 512, 8},
      {"the array behind the end", "INDX", 4096, 0xFFF0, 9, 512, true, 512, 0},
      {"a count without end", "INDX", 4096, 40, 0xFFFF, 512, true, 512, 8},
      {"damaged, as the system marked it", "BAAD", 1024, 48, 3, 512, false, 512, 0},
      {"sectors of nothing", "FILE", 1024, 48, 4, 0, true, 512, 0},
      {"empty", "", 0, 0, 0, 512, false, 512, 0},
  };
  for (const fixup_case& row : cases) {
    bytes block(row.size, 0xEE);
    if (row.size != 0) {
      put(block, 0, as_bytes(row.mark));
      put_u32(block, 4, uint32_t{row.count} << 16 | row.at);
      put_u16(block, 20, 56);
    }
    bytes expected = block;
    for (uint16_t i = 1; i < 9 && row.at < row.size; ++i) {
      for (bytes* const both : {&block, &expected}) put_u16(*both, row.at + 2U * i, 0xA000U + i);
    }
    for (uint16_t i = 1; i <= row.mended; ++i) put_u16(expected, row.stride * i - 2, 0xA000U + i);
    EXPECT_EQ(ovrik::apply_fixups(block, row.sector), row.taken) << row.name;
    EXPECT_TRUE(block == expected) << row.name;
  }
}

TEST(ntfs, a_path_leads_to_the_file_that_bears_the_name_there) {
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

TEST(ntfs, a_file_is_what_can_be_read_of_its_pieces) {
  struct file_case {
    bytes runs;
    uint64_t size;
    std::string content;
    std::set<uint64_t> bad = {};
  };
  const file_case cases[] = {
      {{0x11, 3, 50}, 2500, a + b + c.substr(0, 452)},
      {{0x11, 1, 51, 0x11, 1, 0xFF}, 2048, b + a},
      {{0x11, 1, 50, 0x01, 5, 0x11, 1, 2}, 7168, a + c},  // holes are left out
      {{0x11, 3, 50}, 1 << 30, a + b + c},
      {{0x11, 3, 50}, 3072, a, {103}},
      {{0x11, 1, 50, 0x11, 9, 0x4D}, 9216, a + zeros},  // the volume ends
      {{0x11, 3, 50}, 3072, "not read", {100}},
      {{0x01, 3}, 3072, "not read"},
      {{0x11, 3, 50}, 0, "not read"},
  };
  const auto hive = [](const bytes& runs, const attribute_form& form) {
    ntfs_builder built;
    built.cluster(50, as_bytes(a + b + c));
    built.record(13, {hive_name, non_resident_attribute(0x80, runs, form)});
    return built;
  };
  for (const file_case& row : cases) {
    EXPECT_EQ(content_of(hive(row.runs, {.size = row.size}), row.bad), row.content)
        << testing::PrintToString(row.runs) << row.size;
  }
  EXPECT_EQ(content_of(hive({0x11, 3, 50}, {.name = u"other", .size = 3072})), "not read");
  // A unit of holes is zeros, not the end.
  const bytes holes = {0x01, 16, 0x11, 1, 50, 0x01, 15};
  const attribute_form packed = {.flags = 1, .size = 16384 + 5, .compression_unit = 4};
  EXPECT_EQ(content_of(hive(holes, packed)).substr(0, 16384), std::string(16384, 0));
}

TEST(ntfs, an_attribute_list_brings_pieces_and_never_runs_in_circles) {
  ntfs_builder built;
  built.cluster(50, as_bytes(a + b));
  const auto piece = [](uint8_t cluster, uint64_t vcn, uint16_t id) {
    return non_resident_attribute(0x80, {0x11, 1, cluster},
                                  {.id = id, .first_vcn = vcn, .size = vcn == 0 ? 2048U : 0U});
  };
  const bytes list =
      concat({list_entry(0x80, 20, 3, 1), list_entry(0x80, 13, 1, 2), list_entry(0x80, 21, 4, 5)});
  built.record(20, {data_attribute("no", 9), piece(51, 1, 1)}, 3, 1, 13);
  built.record(21, {piece(50, 0, 5)}, 4, 1, 13);
  built.record(13, {list_attribute({list}), hive_name});
  EXPECT_EQ(content_of(built), a + b) << "pieces in any order, the last entry counts";
  built.cluster(60, list);
  const bytes list_outside = non_resident_attribute(0x20, {0x11, 1, 60}, {.size = list.size()});
  built.record(13, {list_outside, hive_name});
  EXPECT_EQ(content_of(built), a + b) << "a list of its own cluster";
  built.record(20, {piece(51, 1, 1)}, 4, 1, 13);
  EXPECT_EQ(content_of(built), a) << "another sequence number";
  // A piece in the middle that is lost leaves zeros, as long as the file has room for them.
  const bytes lost = list_attribute({list_entry(0x80, 20, 9, 1), list_entry(0x80, 21, 4, 5)});
  built.record(21, {piece(51, 2, 5)}, 4, 1, 13);
  for (const uint64_t allocated : {3072U, 2048U}) {
    bytes first = piece(50, 0, 1);
    put_u64(first, 40, allocated);
    put_u64(first, 48, 3072);
    built.record(13, {lost, hive_name, first});
    EXPECT_EQ(content_of(built), allocated == 3072 ? a + zeros + b : a + b);
  }
  // Records that name each other, as lists and as bases.
  built.record(13, {list_outside, hive_name});
  built.record(20, {list_attribute({list_entry(0x20, 13, 1, 0)}), piece(51, 1, 1)}, 3, 1, 21);
  built.record(21, {list_attribute({list_entry(0x20, 20, 3, 0)}), piece(50, 0, 5)}, 4, 1, 20);
  EXPECT_EQ(content_of(built), a + b);
  built.record(12, {directory_name, index_attribute({13})}, 1, 3, 12);
  EXPECT_EQ(content_of(built), a + b) << "a directory that is its own base";
}

TEST(ntfs, a_boot_sector_without_sense_does_not_mount) {
  struct field {
    size_t at, width;
    uint64_t value;
  };
  const uint64_t most = ~uint64_t{0};
  const field bad[] = {{3, 8, 0},     {11, 2, 0},    {11, 2, 1},           {11, 2, 0xFFFF},
                       {13, 1, 0},    {13, 1, 1},    {13, 1, 0x80},        {48, 8, 0},
                       {48, 8, 1},    {48, 8, most}, {48, 8, most / 1024}, {64, 1, 0x7F},
                       {64, 1, 0x80}, {64, 1, 0xFF}};
  // Clusters of 2 to the power of 1, and records of 512 bytes, which the first one knows better.
  const field fine[] = {{13, 1, 0xFF}, {40, 8, 0}, {40, 8, most},
                        {64, 1, 0},    {64, 1, 1}, {64, 1, 0xF7}};
  const auto content_with = [](const field& changed) {
    ntfs_builder built = sound_volume();
    put_number(built.volume, changed.at, changed.width, changed.value);
    return content_of(built);
  };
  for (const field& f : bad) EXPECT_EQ(content_with(f), "not mounted") << f.at << " " << f.value;
  for (const field& f : fine) EXPECT_EQ(content_with(f), "the hive") << f.at << " " << f.value;
}

TEST(ntfs, every_field_may_hold_anything_and_every_sector_may_be_the_last) {
  ntfs_builder built = sound_volume();
  built.cluster(60, index_block({13}));
  const bytes list = list_attribute({list_entry(0xA0, 20, 1, 2)});
  built.record(12, {directory_name, list, index_attribute({13})});
  built.record(20, {index_piece({0x11, 4, 60}, 0, 2, 4096)});
  const attribute_form packed = {.flags = 1, .size = 9000, .compression_unit = 4};
  built.record(13, {hive_name, non_resident_attribute(0x80, {0x11, 1, 70, 0x01, 15}, packed)});
  built.cluster(70, {0x05, 0xB0, 0x08, 'a', 'b', 'c', 0xFA, 0x2F});
  ASSERT_TRUE(content_of(built).starts_with("abcabc"));
  const size_t kibi = 1024;  // boot sector, index block and the records 0, 12, 13, 20
  for (const size_t begin : {0 * kibi, 60 * kibi, 4 * kibi, 16 * kibi, 17 * kibi, 24 * kibi}) {
    for (size_t at = begin; at < begin + (begin == 0 ? 80 : 320); ++at) {
      for (const uint8_t value : bytes{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        ntfs_builder damaged = built;
        put(damaged.volume, at, bytes(value % 2 == 0 ? 1 : 4, value));
        EXPECT_LE(content_of(damaged).size(), 0x100000U) << at << " " << int{value};
      }
    }
  }
  for (size_t sector = 0; sector < 256; ++sector) {
    ntfs_builder cut = built;
    cut.volume.resize(sector * 512);
    content_of(cut);
    content_of(built, {sector});
  }
}

}  // namespace
}  // namespace test_support
