// Records, run lists, directories and files of composed NTFS volumes, sound and damaged.
#include <gtest/gtest.h>

#include <memory>

#include "sources/ntfs_file.h"
#include "sources/ntfs_path.h"
#include "support/memory_disk.h"
#include "support/ntfs_builder.h"

namespace test_support {
namespace {

const std::string hive_path = "\\windows\\system32\\config\\system";

bytes joined(bytes first, const bytes& second) {
  append(first, second);
  return first;
}

/// What the path leads to: the file's bytes as text, or why there are none.
std::string content_of(const ntfs_builder& built, const std::string& path = hive_path,
                       std::set<uint64_t> bad = {}) {
  ovrik::ntfs_volume volume(std::make_unique<memory_disk>(built.volume, std::move(bad)), 0);
  if (!volume.mount()) return "not mounted";
  ovrik::diagnostics_log log;
  uint64_t inode = 0;
  if (!lookup_path(volume, path, inode, log)) return "not found";
  uni::memory_block file;
  if (!read_file_by_inode(volume, inode, file, log)) return "not read";
  return std::string(reinterpret_cast<const char*>(file.data()), file.size());
}

const bytes directory_name = resident_attribute(0x30, file_name(11, u"Config"));
const bytes name_attribute = resident_attribute(0x30, file_name(12, u"SyStem"));

bytes data_attribute(const std::string& text, uint16_t id = 0) {
  return resident_attribute(0x80, as_bytes(text), {.id = id});
}

/// A volume whose hive is the words "the hive", in the record itself.
ntfs_builder sound_volume() {
  ntfs_builder built;
  built.record(13, {name_attribute, data_attribute("the hive")});
  return built;
}

TEST(ntfs_runs, run_lists_are_decoded_up_to_what_does_not_fit) {
  struct run_case {
    const char* name;
    bytes runs;
    std::string extents;  // vcn:lcn+count, "hole" in place of the lcn
  };
  const run_case cases[] = {
      {"forth and back",
       {0x21, 2, 0, 1, 0x11, 3, 0xF0, 0x11, 1, 0x20, 0},
       "7:256+2 9:240+3 12:272+1 "},
      {"two bytes of minus one", {0x11, 1, 9, 0x21, 1, 0xFF, 0xFF, 0}, "7:9+1 8:8+1 "},
      {"first run at cluster 0, later holes",
       {0x11, 4, 0, 0x11, 2, 5, 0x11, 2, 0, 0x01, 3, 0},
       "7:0+4 11:5+2 13:hole+2 15:hole+3 "},
      {"no offset at first", {0x01, 4, 0x11, 1, 6, 0}, "7:hole+4 11:6+1 "},
      {"no end mark", {0x11, 1, 6}, "7:6+1 "},
      {"an element cut short", {0x11, 1, 6, 0x21, 1, 6}, "7:6+1 "},
      {"fields of 15 bytes that are not there", {0xFF, 1, 6}, ""},
      {"behind every volume", {0x11, 1, 6, 0x81, 1, 0, 0, 0, 0, 0, 0, 0, 0x7F, 0}, "7:6+1 "},
      {"in front of every volume", {0x11, 1, 6, 0x11, 1, 0x80, 0}, "7:6+1 "},
      {"nothing", {}, ""},
  };
  for (const run_case& c : cases) {
    ovrik::cluster_extents extents;
    decode_run_list(extents, ovrik::byte_view(c.runs), 7);
    std::string text;
    for (const ovrik::cluster_extent& e : extents) {
      text += std::to_string(e.vcn) + ":" + (e.sparse ? "hole" : std::to_string(e.lcn)) + "+" +
              std::to_string(e.count) + " ";
    }
    EXPECT_EQ(text, c.extents) << c.name;
  }
}

TEST(ntfs_record, sector_ends_go_back_by_the_stride_that_the_count_implies) {
  struct fixup_case {
    const char* name;
    std::string mark;
    size_t size;
    uint16_t at, count;
    uint32_t sector;
    bool taken;
    std::vector<size_t> mended;  // where words of the sequence end up
  };
  const fixup_case cases[] = {
      {"two sectors", "FILE", 1024, 48, 3, 512, true, {510, 1022}},
      {"written in steps of 512 on large sectors",
       "FILE",
       4096,
       48,
       9,
       4096,
       true,
       {510, 1022, 1534, 2046, 2558, 3070, 3582, 4094}},
      {"a step of 4096", "INDX", 4096, 40, 2, 4096, true, {4094}},
      {"a count that divides nothing", "FILE", 1024, 48, 4, 512, true, {510, 1022}},
      {"nothing to mend", "FILE", 1024, 48, 1, 512, true, {}},
      {"the array elsewhere in a file record", "FILE", 1024, 42, 3, 512, false, {}},
      {"the array elsewhere in an index block",
       "INDX",
       4096,
       400,
       9,
       512,
       true,
       {510, 1022, 1534, 2046, 2558, 3070, 3582, 4094}},
      {"the array behind the end", "INDX", 4096, 0xFFF0, 9, 512, true, {}},
      {"a count without end",
       "INDX",
       4096,
       40,
       0xFFFF,
       512,
       true,
       {510, 1022, 1534, 2046, 2558, 3070, 3582, 4094}},
      {"damaged, as the system marked it", "BAAD", 1024, 48, 3, 512, false, {}},
      {"sectors of nothing", "FILE", 1024, 48, 4, 0, true, {}},
      {"empty", "", 0, 0, 0, 512, false, {}},
  };
  for (const fixup_case& c : cases) {
    bytes block(c.size, 0xEE);
    if (c.size != 0) {
      put(block, 0, as_bytes(c.mark));
      put_u16(block, 4, c.at);
      put_u16(block, 6, c.count);
      put_u16(block, 20, 56);
      for (size_t i = 1; i < 9 && c.at < c.size; ++i) {
        put_u16(block, c.at + 2 * i, static_cast<uint16_t>(0xA000 + i));
      }
    }
    EXPECT_EQ(ovrik::apply_fixups(block, c.sector), c.taken) << c.name;
    std::vector<size_t> mended;
    for (size_t at = 510; at < c.size; at += 512) {
      if (get_u16(block, at) == 0xA001 + mended.size()) mended.push_back(at);
    }
    EXPECT_EQ(mended, c.mended) << c.name;
  }
}

TEST(ntfs, a_path_leads_to_the_file_that_bears_the_name_there) {
  ntfs_builder built = sound_volume();
  for (const std::string path :
       {"C:\\Windows\\System32\\CONFIG\\SYSTEM", "/windows//system32/config/system/",
        "windows\\ system32 \\config\\System:stream"}) {
    EXPECT_EQ(content_of(built, path), "the hive") << path;
  }
  EXPECT_EQ(content_of(built, "\\windows\\system32\\config\\systems"), "not found");
  EXPECT_EQ(content_of(built, "\\windows/system32"), "not found");

  // Blocks that the tree has abandoned are listed; a name in another directory is the second
  // choice, a record that is not in use the third, and a name for DOS none at all.
  const auto piece = [](const bytes& runs, uint64_t vcn, uint16_t id) {
    return non_resident_attribute(0xA0, runs,
                                  {.id = id, .name = u"$I30", .first_vcn = vcn, .size = 8192});
  };
  built.record(
      12,
      {directory_name,
       resident_attribute(0x20, joined(list_entry(0xA0, 12, 1, 1), list_entry(0xA0, 20, 9, 2))),
       resident_attribute(0x90, index_root({}), {.name = u"$I30"}), piece({0x11, 4, 60}, 0, 1)});
  built.record(20, {piece({0x11, 1, 70, 0x11, 3, 10}, 4, 2)}, 1, 1, 12);
  built.cluster(60, index_block({16, 17}));
  const bytes block = index_block({15, 14, 13});
  built.cluster(70, bytes(block.begin(), block.begin() + 1024));
  built.cluster(80, bytes(block.begin() + 1024, block.end()));
  built.record(14, {resident_attribute(0x30, file_name(9, u"system")), data_attribute("else")});
  built.record(15, {name_attribute, data_attribute("deleted")}, 2, 0);
  built.record(16, {resident_attribute(0x30, file_name(12, u"SYSTEM", 2)), data_attribute("dos")});
  EXPECT_EQ(content_of(built), "the hive");
  put(built.volume, ntfs_builder::record_at(13), as_bytes("BAAD"));
  EXPECT_EQ(content_of(built), "deleted");
  put(built.volume, ntfs_builder::record_at(15), as_bytes("XXXX"));
  EXPECT_EQ(content_of(built), "else");
  put(built.volume, ntfs_builder::record_at(14), as_bytes("XXXX"));
  EXPECT_EQ(content_of(built), "not found");

  // An index whose middle is lost: the block behind the gap begins within a block's length.
  built.record(13, {name_attribute, data_attribute("the hive")});
  bytes start = piece({0x11, 2, 60}, 0, 1),
        end = piece({0x11, 1, 69, 0x11, 1, 1, 0x11, 3, 10}, 7, 2);
  put_u64(start, 40, 12 * 1024);
  built.record(12, {directory_name, resident_attribute(0x20, list_entry(0xA0, 20, 1, 2)),
                    resident_attribute(0x90, index_root({}), {.name = u"$I30"}), start});
  built.record(20, {end}, 1, 1, 12);
  EXPECT_EQ(content_of(built), "the hive");
}

TEST(ntfs, a_file_is_what_can_be_read_of_its_pieces) {
  const std::string a(1024, 'a'), b(1024, 'b'), c(1024, 'c');
  const auto hive = [](const bytes& runs, uint64_t size, attribute_form form = {}) {
    form.size = size;
    ntfs_builder built;
    for (uint8_t i = 0; i < 3; ++i)
      built.cluster(50U + i, bytes(1024, static_cast<uint8_t>('a' + i)));
    built.record(13, {name_attribute, non_resident_attribute(0x80, runs, form)});
    return built;
  };
  EXPECT_EQ(content_of(hive({0x11, 3, 50}, 2500)), a + b + c.substr(0, 452));
  EXPECT_EQ(content_of(hive({0x11, 1, 51, 0x11, 1, 0xFF}, 2048)), b + a);
  EXPECT_EQ(content_of(hive({0x11, 1, 50, 0x01, 5, 0x11, 1, 2}, 7168)), a + c)
      << "holes are left out";
  EXPECT_EQ(content_of(hive({0x11, 3, 50}, 1 << 30)), a + b + c);
  EXPECT_EQ(content_of(hive({0x11, 3, 50}, 3072), hive_path, {103}), a);
  EXPECT_EQ(content_of(hive({0x11, 1, 50, 0x11, 9, 0x4D}, 9216)), a + std::string(1024, 0))
      << "ends";
  EXPECT_EQ(content_of(hive({0x11, 3, 50}, 3072), hive_path, {100}), "not read");
  EXPECT_EQ(content_of(hive({0x01, 3}, 3072)), "not read");
  EXPECT_EQ(content_of(hive({0x11, 3, 50}, 0)), "not read");
  EXPECT_EQ(content_of(hive({0x11, 3, 50}, 3072, {.name = u"other"})), "not read");
  // A unit of holes is zeros, not the end; one without holes is stored as it is.
  const attribute_form packed = {.flags = 1, .compression_unit = 4};
  EXPECT_EQ(content_of(hive({0x01, 16, 0x11, 1, 50, 0x01, 15}, 16384 + 5, packed)).substr(0, 16384),
            std::string(16384, 0));
}

TEST(ntfs, an_attribute_list_brings_pieces_and_never_runs_in_circles) {
  ntfs_builder built;
  built.cluster(50, bytes(1024, 'a'));
  built.cluster(51, bytes(1024, 'b'));
  const auto piece = [](uint8_t cluster, uint64_t vcn, uint16_t id) {
    return non_resident_attribute(0x80, {0x11, 1, cluster},
                                  {.id = id, .first_vcn = vcn, .size = vcn == 0 ? 2048U : 0U});
  };
  const std::string whole = std::string(1024, 'a') + std::string(1024, 'b');
  const bytes list = joined(list_entry(0x80, 20, 3, 1),
                            joined(list_entry(0x80, 13, 1, 2), list_entry(0x80, 21, 4, 5)));
  built.record(20, {data_attribute("no", 9), piece(51, 1, 1)}, 3, 1, 13);
  built.record(21, {piece(50, 0, 5)}, 4, 1, 13);
  built.record(13, {resident_attribute(0x20, list), name_attribute});
  EXPECT_EQ(content_of(built), whole) << "pieces in any order, the last entry counts";
  built.cluster(60, list);
  built.record(
      13, {non_resident_attribute(0x20, {0x11, 1, 60}, {.size = list.size()}), name_attribute});
  EXPECT_EQ(content_of(built), whole) << "a list of its own cluster";
  built.record(20, {piece(51, 1, 1)}, 4, 1, 13);
  EXPECT_EQ(content_of(built), std::string(1024, 'a')) << "another sequence number";
  // A piece in the middle that is lost leaves zeros, as long as the file has room for them.
  const auto three = [&](uint64_t allocated) {
    bytes first = piece(50, 0, 1);
    put_u64(first, 40, allocated);
    put_u64(first, 48, 3072);
    built.record(13, {resident_attribute(
                          0x20, joined(list_entry(0x80, 20, 9, 1), list_entry(0x80, 21, 4, 5))),
                      name_attribute, first});
    built.record(21, {piece(51, 2, 5)}, 4, 1, 13);
    return content_of(built);
  };
  EXPECT_EQ(three(3072), std::string(1024, 'a') + std::string(1024, 0) + std::string(1024, 'b'));
  EXPECT_EQ(three(2048), whole);
  built.record(21, {piece(50, 0, 5)}, 4, 1, 13);
  built.record(
      13, {non_resident_attribute(0x20, {0x11, 1, 60}, {.size = list.size()}), name_attribute});
  // Records that name each other, as lists and as bases.
  built.record(20, {resident_attribute(0x20, list_entry(0x20, 13, 1, 0)), piece(51, 1, 1)}, 3, 1,
               21);
  built.record(21, {resident_attribute(0x20, list_entry(0x20, 20, 3, 0)), piece(50, 0, 5)}, 4, 1,
               20);
  EXPECT_EQ(content_of(built), whole);
  built.record(12, {directory_name, resident_attribute(0x90, index_root({13}), {.name = u"$I30"})},
               1, 3, 12);
  EXPECT_EQ(content_of(built), whole) << "a directory that is its own base";
}

TEST(ntfs, a_boot_sector_without_sense_does_not_mount) {
  const std::string fine = "the hive", none = "not mounted";
  struct boot_case {
    size_t at, width;
    uint64_t value;
    const std::string& outcome;
  };
  const uint64_t most = ~uint64_t{0};
  const boot_case cases[] = {
      {3, 8, 0, none},     {11, 2, 0, none},    {11, 2, 1, none},           {11, 2, 0xFFFF, none},
      {13, 1, 0, none},    {13, 1, 1, none},    {13, 1, 0xFF, fine},  // 2 to the power of 1
      {13, 1, 0x80, none}, {40, 8, 0, fine},    {40, 8, most, fine},        {48, 8, 0, none},
      {48, 8, 1, none},    {48, 8, most, none}, {48, 8, most / 1024, none}, {64, 1, 0, fine},
      {64, 1, 1, fine},    {64, 1, 0xFF, none}, {64, 1, 0x7F, none},        {64, 1, 0x80, none},
      {64, 1, 0xF7, fine},  // 512 bytes: the record knows better
  };
  for (const boot_case& c : cases) {
    ntfs_builder built = sound_volume();
    for (size_t i = 0; i < c.width; ++i) {
      built.volume[c.at + i] = static_cast<uint8_t>(c.value >> (8 * i));
    }
    EXPECT_EQ(content_of(built), c.outcome) << c.at << " = " << c.value;
  }
}

TEST(ntfs, every_field_may_hold_anything_and_every_sector_may_be_the_last) {
  ntfs_builder built = sound_volume();
  built.cluster(60, index_block({13}));
  built.record(12, {directory_name, resident_attribute(0x20, list_entry(0xA0, 20, 1, 2)),
                    resident_attribute(0x90, index_root({13}), {.name = u"$I30"})});
  built.record(
      20, {non_resident_attribute(0xA0, {0x11, 4, 60}, {.id = 2, .name = u"$I30", .size = 4096})});
  built.record(13, {name_attribute,
                    non_resident_attribute(0x80, {0x11, 1, 70, 0x01, 15},
                                           {.flags = 1, .size = 9000, .compression_unit = 4})});
  built.cluster(70, {0x05, 0xB0, 0x08, 'a', 'b', 'c', 0xFA, 0x2F});
  ASSERT_TRUE(content_of(built).starts_with("abcabc"));
  std::vector<std::pair<size_t, size_t>> ranges = {{0, 80}, {60 * 1024, 60 * 1024 + 180}};
  for (const uint64_t entry : bytes{0, 12, 13, 20}) {
    ranges.emplace_back(ntfs_builder::record_at(entry), ntfs_builder::record_at(entry) + 320);
  }
  for (const auto& [begin, end] : ranges) {
    for (size_t at = begin; at < end; ++at) {
      for (const uint8_t value : bytes{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        ntfs_builder damaged = built;
        for (size_t i = at; i < at + (value % 2 == 0 ? 1 : 4); ++i) damaged.volume[i] = value;
        EXPECT_LE(content_of(damaged).size(), 0x100000U) << at << " " << int{value};
      }
    }
  }
  for (size_t sector = 0; sector < 256; ++sector) {
    ntfs_builder cut = built;
    cut.volume.resize(sector * 512);
    content_of(cut);
    content_of(built, hive_path, {sector});
  }
}

}  // namespace
}  // namespace test_support
