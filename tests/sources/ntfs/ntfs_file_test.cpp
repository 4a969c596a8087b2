// Files in pieces, in composed volumes.
#include "sources/ntfs/ntfs_file.h"

#include <gtest/gtest.h>

#include "support/hive_volume.h"

namespace test_support {
namespace {

const std::string a(1024, 'a'), b(1024, 'b'), c(1024, 'c'), zeros(1024, 0);

std::string half(const std::string& cluster) { return cluster.substr(0, 512); }

TEST(ntfs_file, a_file_is_what_can_be_read_of_its_pieces) {
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
      // What cannot be read is zeros, a sector at least; what stands behind it comes.
      {{0x11, 3, 50}, 3072, a + half(b) + half(zeros) + c, {103}},
      {{0x11, 3, 50}, 3072, half(zeros) + half(a) + b + c, {100}},
      {{0x11, 1, 50, 0x11, 2, 0x4D, 0x11, 1, 0xB4}, 4096, a + zeros + zeros + b},  // outside
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
  // A unit without a hole is stored as it is, even if it could be decompressed.
  ntfs_builder stored = hive({0x11, 16, 70}, {.flags = 1, .size = 16384, .compression_unit = 4});
  const bytes chunk = concat({{0xFF, 0x3F}, bytes(4096, 'x')});
  const bytes unit = concat({chunk, {0x05, 0xB0, 0x08, 'a', 'b', 'c', 0xFF, 0x2F}, bytes(12278)});
  stored.cluster(70, unit);
  EXPECT_EQ(content_of(stored), std::string(unit.begin(), unit.end()));
  // A unit of holes is zeros, not the end.
  const bytes holes = {0x01, 16, 0x11, 1, 50, 0x01, 15};
  const attribute_form packed = {.flags = 1, .size = 16384 + 5, .compression_unit = 4};
  EXPECT_EQ(content_of(hive(holes, packed)).substr(0, 16384), std::string(16384, 0));
}

TEST(ntfs_file, an_attribute_list_brings_pieces_and_never_runs_in_circles) {
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

}  // namespace
}  // namespace test_support
