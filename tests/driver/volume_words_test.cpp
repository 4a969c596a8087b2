// What is said about volumes on disks that no tool of today makes.
#include "driver/volume_words.h"

#include <gtest/gtest.h>

#include "support/memory_disk.h"
#include "support/table_disk.h"

namespace test_support {
namespace {

std::string said_of(const table_disk& disk, uint64_t sector) {
  memory_disk source(disk.content);
  return volume_words(choose_volume(source, sector * 512, false));
}

TEST(volume_words, findings_come_before_the_list_and_the_advice) {
  table_disk stray(400);
  stray.slot(100, 0, 12, 10, 8).slot(100, 1, 7, 1000, 8);
  EXPECT_EQ(said_of(stray, 110),
            "disk is corrupted, partition info questionable\n"
            "volume offset selected 0xdc00 is not a NTFS partition, but [fat32]\n"
            "volume offset 0x89800 is not within image bounds\n"
            "\nvolume offset [ 0xdc00 ] : fat32\nvolume offset [ 0x89800 ] : ntfs or exfat\n"
            "\nuse option [-offset 0x89800]\n");
  table_disk cut(200);
  cut.slot(0, 0, 7, 300, 8).slot(0, 1, 7, 190, 20).slot(0, 2, 7, 400, 8);
  EXPECT_EQ(said_of(cut, 190),
            "volume offset 0x25800 is not within image bounds\n"
            "volume offset 0x17c00 is a NTFS partition, however image size does not encapsulate "
            "entire volume\n");
  EXPECT_EQ(said_of(table_disk(200).ntfs(100), 100), "");
}

TEST(volume_words, the_diagnostics_name_the_volume_that_is_read) {
  const auto road = [](const table_disk& disk, uint64_t sector) {
    memory_disk source(disk.content);
    return volume_road_text(choose_volume(source, sector * 512, false));
  };
  table_disk two(200);
  two.slot(0, 0, 12, 90, 8).slot(0, 1, 7, 100, 8).ntfs(100).ntfs(120);
  const std::string second = "offset 0xc800, partition 2 of 2 (ntfs or exfat)";
  EXPECT_EQ(road(two, 100), "volume read: " + second);
  EXPECT_EQ(road(two, 50), "volume read: " + second + "; asked for: offset 0x6400");
  EXPECT_EQ(road(two, 120), "volume read: offset 0xf000, no partition table names it");
  EXPECT_EQ(road(table_disk(200).ntfs(100), 100),
            "volume read: offset 0xc800, the disk has no partition table");
  table_disk backup(200);
  backup.slot(0, 0, 0xEE, 1, 9).backup_gpt({{100, 107}}, 190).ntfs(100);
  EXPECT_EQ(road(backup, 100),
            "volume read: offset 0xc800, partition 1 of 1 (ntfs or exfat); the first GPT is "
            "damaged, its backup was taken");
}

}  // namespace
}  // namespace test_support
