// Boot sectors without sense, and volumes that are damaged anywhere.
#include "sources/ntfs/ntfs_volume.h"

#include <gtest/gtest.h>

#include "support/hive_volume.h"

namespace test_support {
namespace {

TEST(ntfs_volume, a_boot_sector_without_sense_does_not_mount) {
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

TEST(ntfs_volume, every_field_may_hold_anything_and_every_sector_may_be_the_last) {
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

TEST(ntfs_volume, the_copy_of_record_0_counts_where_the_first_is_damaged) {
  ntfs_builder built = sound_volume();
  const uint8_t* const first = built.volume.data() + ntfs_builder::record_at(0);
  const bytes record(first, first + ntfs_builder::cluster_bytes);
  built.cluster(100, record);
  const std::pair<const char*, bytes> damages[] = {
      {"zeros", bytes(1024)}, {"BAAD", as_bytes("BAAD")}, {"no size", bytes(64, 0xFF)}};
  for (const auto& [name, damage] : damages) {
    ntfs_builder damaged = built;
    put(damaged.volume, ntfs_builder::record_at(0), damage);
    EXPECT_EQ(content_of(damaged), "not mounted") << name;
    put_u64(damaged.volume, 56, 100);
    EXPECT_EQ(content_of(damaged), "the hive") << name;
  }
}

TEST(ntfs_volume, records_of_windows_2000_are_read) {
  ntfs_builder built = sound_volume();
  for (uint64_t entry = 0; entry < ntfs_builder::record_count; ++entry) {
    // The update sequence moves from 48 to 42.
    uint8_t* const record = built.volume.data() + ntfs_builder::record_at(entry);
    std::copy(record + 48, record + 54, record + 42);
    std::fill(record + 48, record + 54, uint8_t{0});
    record[4] = 42;
  }
  EXPECT_EQ(content_of(built), "the hive");
}

}  // namespace
}  // namespace test_support
