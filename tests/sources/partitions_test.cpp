// Partition tables that no tool writes.
#include "sources/partitions.h"

#include <gtest/gtest.h>

#include <sstream>

#include "sources/ntfs_offset.h"
#include "support/bytes.h"
#include "support/memory_disk.h"

namespace test_support {
namespace {

/// A disk of `sectors` sectors of `unit` bytes, on which tables and volumes are placed.
struct table_disk {
  explicit table_disk(size_t sectors, size_t sector_bytes = 512)
      : content(sectors * sector_bytes), unit(sector_bytes) {}

  table_disk& slot(size_t sector, size_t index, uint8_t type, uint32_t first, uint32_t count) {
    const size_t at = sector * unit + 446 + 16 * index;
    content[at + 4] = type;
    put_u32(content, at + 8, first);
    put_u32(content, at + 12, count);
    put_u16(content, sector * unit + 510, 0xAA55);
    return *this;
  }
  table_disk& ntfs(size_t sector, uint64_t count = 8) {
    put(content, sector * unit + 3, as_bytes("NTFS    "));
    put_u16(content, sector * unit + 11, static_cast<uint16_t>(unit));
    put_u64(content, sector * unit + 40, count);
    return *this;
  }
  table_disk& gpt(const std::vector<uint64_t>& firsts, uint64_t entries_at = 2) {
    slot(0, 0, 0xEE, 1, 0xFFFFFFFF);
    put_u64(content, unit + 24, 1);
    put_u64(content, unit + 72, entries_at);
    put_u32(content, unit + 80, static_cast<uint32_t>(firsts.size()));
    put_u32(content, unit + 84, 128);
    for (size_t i = 0; i < firsts.size(); ++i) {
      const size_t at = entries_at * unit + 128 * i;
      if (at + 128 > content.size()) break;
      content[at] = 1;
      put_u64(content, at + 32, firsts[i]);
      put_u64(content, at + 40, firsts[i] + 7);
    }
    return *this;
  }

  bytes content;
  size_t unit;
};

/// The partitions as "first sector+count:name", in their order.
std::string found_on(const table_disk& disk, std::set<uint64_t> bad = {}, bool guess = false) {
  memory_disk source(disk.content, std::move(bad));
  ovrik::partition_list list;
  const bool any = find_partitions(source, list, guess);
  std::string text;
  for (const ovrik::partition_info& partition : list) {
    text += std::to_string(partition.start_sector) + "+" + std::to_string(partition.sector_count) +
            ":" + ovrik::partition_type_name(partition.type) + "\n";
  }
  return any ? text : "none";
}

TEST(partitions, tables_are_walked_as_far_as_they_lead) {
  // A primary one behind the extended one, and two logical ones: the second record's first sector
  // counts from the extended one.
  table_disk chain(400);
  chain.slot(0, 0, 7, 70, 8).slot(0, 1, 5, 100, 300).slot(0, 2, 7, 5, 5);
  chain.slot(100, 0, 7, 10, 8).slot(100, 1, 5, 100, 50).slot(200, 0, 7, 10, 9);
  chain.ntfs(70).ntfs(110).ntfs(210);
  const std::string whole =
      "70+8:ntfs or exfat\n100+300:exten\n5+5:ntfs or exfat\n110+8:ntfs or exfat\n"
      "200+50:exten\n210+9:ntfs or exfat\n";
  EXPECT_EQ(found_on(chain), whole);
  EXPECT_EQ(found_on(chain, {200}),
            "70+8:ntfs or exfat\n100+300:exten\n5+5:ntfs or exfat\n110+8:ntfs or exfat\n"
            "200+50:exten\n");
  // A chain that cannot be read takes nothing from what the table itself names.
  EXPECT_EQ(found_on(chain, {100}), "70+8:ntfs or exfat\n100+300:exten\n5+5:ntfs or exfat\n");
  EXPECT_EQ(found_on(chain, {0}), "none");

  // A chain that comes back to itself ends.
  table_disk cycle = chain;
  cycle.slot(200, 1, 5, 0, 50);
  EXPECT_EQ(found_on(cycle), whole + "100+50:exten\n");
  cycle.slot(200, 1, 5, 100, 50);
  EXPECT_EQ(found_on(cycle), whole + "200+50:exten\n");

  // A volume at sector 63 that nothing names; its type is the last one of the first record.
  table_disk hidden = chain;
  hidden.ntfs(63);
  EXPECT_TRUE(found_on(hidden).starts_with("63+37:ntfs or exfat [guess]\n")) << found_on(hidden);
}

TEST(partitions, a_stray_table_counts_only_when_guessing_is_asked_for) {
  table_disk stray(400);
  stray.slot(100, 0, 7, 10, 8).ntfs(110);
  EXPECT_EQ(found_on(stray), "none");
  EXPECT_EQ(found_on(stray, {}, true), "110+8:ntfs or exfat\n");
  EXPECT_EQ(found_on(stray, {50}, true), "none");
}

TEST(partitions, a_gpt_is_whole_or_nothing) {
  table_disk disk(200);
  disk.gpt({100, 120}).ntfs(100).ntfs(120);
  EXPECT_EQ(found_on(disk), "100+8:ntfs or exfat\n120+8:ntfs or exfat\n");
  EXPECT_EQ(found_on(disk, {120}), "none") << "the second one's first sector";
  EXPECT_EQ(found_on(disk, {1}), "none") << "the header";
  EXPECT_EQ(found_on(table_disk(200).gpt({100}, 199).ntfs(100), {199}), "none") << "an entry";
  struct field_case {
    size_t at;
    uint32_t value;
  };
  for (const field_case& c : {field_case{24, 2},
                              {84, 0},
                              {84, 47},
                              {84, 0xFFFFFFFF},
                              {80, 0},
                              {80, 0xFFFFFFFF},
                              {76, 0xFFFFFFFF},
                              {72, 0}}) {
    table_disk damaged = disk;
    put_u32(damaged.content, 512 + c.at, c.value);
    EXPECT_EQ(found_on(damaged), "none") << c.at << " " << c.value;
  }
}

TEST(partitions, tables_of_large_sectors_bear_the_mark_at_510) {
  table_disk mbr(64, 4096);
  mbr.slot(0, 0, 7, 16, 8).ntfs(16);
  EXPECT_EQ(found_on(mbr), "16+8:ntfs or exfat\n");
  table_disk gpt(64, 4096);
  gpt.gpt({16}).ntfs(16);
  EXPECT_EQ(found_on(gpt), "16+8:ntfs or exfat\n");
  memory_disk source(gpt.content);
  std::ostringstream text;
  bool found = false;
  uint64_t offset = 0x10000;
  EXPECT_TRUE(pick_ntfs_offset(text, found, offset, source, false)) << text.str();

  table_disk unknown(64, 4096);
  unknown.gpt({16});
  EXPECT_EQ(found_on(unknown), "16+8:gpt\n") << "a header is enough";
}

TEST(partitions, a_volume_on_a_disk_without_a_table_is_found_by_its_offset) {
  table_disk disk(200);
  disk.ntfs(100);
  memory_disk source(disk.content);
  for (const uint64_t sector : {0U, 99U, 100U}) {
    std::ostringstream text;
    bool found = false;
    uint64_t offset = sector * 512;
    EXPECT_EQ(pick_ntfs_offset(text, found, offset, source, false), sector == 100) << sector;
    EXPECT_EQ(text.str(), sector == 100 ? "" : "couldn't find any partitions on disk\n");
    EXPECT_EQ(offset, sector * 512);
  }
}

TEST(partitions, every_field_of_the_tables_may_hold_anything) {
  table_disk mbr(220);
  mbr.slot(0, 0, 7, 70, 8).slot(0, 1, 15, 100, 100).slot(100, 0, 7, 10, 8).ntfs(70).ntfs(110);
  table_disk gpt(200);
  gpt.gpt({100, 120}).ntfs(100).ntfs(120);
  struct range {
    const table_disk& disk;
    size_t begin, end;
  };
  for (const range& r : {range{mbr, 440, 512},
                         {mbr, 100 * 512 + 440, 101 * 512},
                         {mbr, 70 * 512, 70 * 512 + 90},
                         {gpt, 512, 512 + 92},
                         {gpt, 1024, 1024 + 56}}) {
    for (size_t at = r.begin; at < r.end; ++at) {
      for (const uint8_t value : bytes{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        table_disk damaged = r.disk;
        for (size_t i = at; i < std::min(at + 4, r.end); ++i) damaged.content[i] = value;
        found_on(damaged, {}, true);
        memory_disk source(damaged.content);
        std::ostringstream text;
        bool found = false;
        uint64_t offset = 70 * 512;
        const bool right = pick_ntfs_offset(text, found, offset, source, false);
        EXPECT_TRUE(right || !text.str().empty()) << at;
      }
    }
  }
}

}  // namespace
}  // namespace test_support
