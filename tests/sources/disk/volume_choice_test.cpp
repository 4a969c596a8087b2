// Which volume of a disk is taken for the one that is meant.
#include "sources/disk/volume_choice.h"

#include <gtest/gtest.h>

#include "support/memory_disk.h"
#include "support/table_disk.h"

namespace test_support {
namespace {

using ovrik::volume_outcome;

constexpr uint64_t sector = 512;

struct choice_case {
  const char* name;
  table_disk disk;
  uint64_t asked_sector;
  volume_outcome outcome;
  uint64_t sector_chosen;
  size_t partitions;          // how many are listed
  std::string findings = "";  // "outside SECTOR " and "no ntfs SECTOR "
  bool ignore_size = false;
};

TEST(volume_choice, the_volume_is_the_one_asked_for_or_the_last_of_the_table) {
  const table_disk empty(200);
  const table_disk volume = table_disk(200).ntfs(0, 200), elsewhere = table_disk(200).ntfs(100);
  const table_disk longer = table_disk(200).ntfs(0, 201);
  table_disk two(200);
  two.slot(0, 0, 7, 70, 8).slot(0, 1, 12, 90, 8).slot(0, 2, 7, 100, 8).ntfs(70).ntfs(100);
  table_disk cut(200);
  cut.slot(0, 0, 7, 300, 8).slot(0, 1, 7, 190, 20).slot(0, 2, 7, 400, 8).ntfs(190, 0);
  const table_disk no_ntfs = table_disk(200).slot(0, 0, 12, 70, 8);
  table_disk stray(400);
  stray.slot(100, 0, 7, 10, 8).ntfs(110);
  const table_disk deleted = table_disk(two).ntfs(130);
  const auto at_offset = volume_outcome::at_offset;
  const auto other_offset = volume_outcome::other_offset;
  const choice_case cases[] = {
      {"behind the end", two, 201, volume_outcome::offset_outside, 201, 0},
      {"no table", empty, 0, volume_outcome::no_partitions, 0, 0},
      {"no table, a volume in the midst, not asked for", elsewhere, 99,
       volume_outcome::no_partitions, 99, 0},
      {"no table, a volume in the midst", elsewhere, 100, at_offset, 100, 0},
      {"the disk is the volume", volume, 0, at_offset, 0, 1},
      {"the disk is the volume, asked for elsewhere", volume, 5, other_offset, 0, 1},
      {"the volume is longer", longer, 0, volume_outcome::cut_short, 0, 1},
      {"the volume is longer, which is accepted", longer, 0, at_offset, 0, 1, "", true},
      {"the first of two", two, 70, at_offset, 70, 3},
      {"neither of two", two, 0, other_offset, 100, 3},
      {"FAT where asked for", two, 90, other_offset, 100, 3, "no ntfs 90 "},
      {"some begin outside", cut, 0, other_offset, 400, 3, "outside 300 outside 400 "},
      {"one begins outside, the right one is cut", cut, 190, volume_outcome::cut_short, 190, 3,
       "outside 300 "},
      {"a volume that no table names", deleted, 130, at_offset, 130, 3},
      {"the same beside a stray table", table_disk(stray).ntfs(200), 200, at_offset, 200, 0},
      {"no NTFS", no_ntfs, 0, volume_outcome::no_ntfs, 0, 1},
      {"no NTFS, and FAT where asked for", no_ntfs, 70, volume_outcome::no_ntfs, 70, 1,
       "no ntfs 70 "},
      {"a stray table", stray, 0, other_offset, 110, 1},
  };
  for (const choice_case& c : cases) {
    SCOPED_TRACE(c.name);
    memory_disk source(c.disk.content);
    const ovrik::volume_choice choice =
        choose_volume(source, c.asked_sector * sector, c.ignore_size);
    EXPECT_EQ(choice.outcome, c.outcome);
    EXPECT_EQ(choice.asked_offset, c.asked_sector * sector);
    EXPECT_EQ(choice.offset, c.sector_chosen * sector);
    EXPECT_EQ(choice.partitions.size(), c.partitions);
    EXPECT_EQ(choice.table_is_guess, std::string(c.name) == "a stray table");
    std::string findings;
    for (const ovrik::partition_finding& finding : choice.findings) {
      const bool outside = finding.fault == ovrik::partition_fault::begins_outside;
      findings += (outside ? "outside " : "no ntfs ") +
                  std::to_string(finding.partition.start_sector) + " ";
    }
    EXPECT_EQ(findings, c.findings);
  }
}

}  // namespace
}  // namespace test_support
