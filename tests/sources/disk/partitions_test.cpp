// Partition tables that no tool writes.
#include "sources/disk/partitions.h"

#include <gtest/gtest.h>

#include "sources/disk/partition_types.h"
#include "sources/disk/volume_choice.h"
#include "support/memory_disk.h"
#include "support/table_disk.h"

namespace test_support {
namespace {

/// The partitions as "first sector+count:name", in their order.
std::string found_on(const table_disk& disk, std::set<uint64_t> bad = {}, bool guess = false) {
  memory_disk source(disk.content, std::move(bad));
  ovrik::partition_list list;
  const bool any = find_partitions(source, list, guess);
  std::string text;
  for (const ovrik::partition_info& partition : list) {
    text += std::to_string(partition.start_sector) + "+" + std::to_string(partition.sector_count) +
            ":" + ovrik::partition_type_name(partition.type) + " ";
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
  const std::string table = "70+8:ntfs or exfat 100+300:exten 5+5:ntfs or exfat ";
  const std::string first = table + "110+8:ntfs or exfat 200+50:exten ";
  const std::string whole = first + "210+9:ntfs or exfat ";
  EXPECT_EQ(found_on(chain), whole);
  EXPECT_EQ(found_on(chain, {200}), first);
  // A chain that cannot be read takes nothing from what the table itself names.
  EXPECT_EQ(found_on(chain, {100}), table);
  EXPECT_EQ(found_on(chain, {0}), "none");

  // A chain that comes back to itself ends.
  table_disk cycle = chain;
  cycle.slot(200, 1, 5, 0, 50);
  EXPECT_EQ(found_on(cycle), whole + "100+50:exten ");
  cycle.slot(200, 1, 5, 100, 50);
  EXPECT_EQ(found_on(cycle), whole + "200+50:exten ");

  // A volume at sector 63 that nothing names; its type is the last one of the first record.
  EXPECT_EQ(found_on(chain.ntfs(63)).find("63+37:ntfs or exfat [guess] "), 0U);
}

TEST(partitions, a_stray_table_is_only_looked_for_when_asked) {
  table_disk stray(400);
  stray.slot(100, 0, 7, 10, 8).ntfs(110);
  EXPECT_EQ(found_on(stray), "none");
  EXPECT_EQ(found_on(stray, {}, true), "110+8:ntfs or exfat ");
  EXPECT_EQ(found_on(stray, {50}, true), "none");
  // What a partition holds counts for more than its type.
  EXPECT_EQ(found_on(stray.slot(100, 0, 0x42, 10, 8), {}, true), "110+8:ntfs or exfat ");
}

TEST(partitions, a_gpt_is_whole_or_nothing) {
  const table_disk disk = table_disk(200).gpt({{100, 107}, {120, 127}}).ntfs(100).ntfs(120);
  EXPECT_EQ(found_on(disk), "100+8:ntfs or exfat 120+8:ntfs or exfat ");
  EXPECT_EQ(found_on(disk, {120}), "none") << "the second one's first sector";
  EXPECT_EQ(found_on(disk, {1}), "none") << "the header";
  EXPECT_EQ(found_on(table_disk(200).gpt({{100, 107}}, 199).ntfs(100), {199}), "none")
      << "an entry";
  const std::pair<size_t, uint32_t> fields[] = {{24, 2},          {84, 0}, {84, 47},
                                                {84, 0xFFFFFFFF}, {80, 0}, {80, 0xFFFFFFFF},
                                                {76, 0xFFFFFFFF}, {72, 0}};
  for (const auto& [at, value] : fields) {
    table_disk damaged = disk;
    put_u32(damaged.content, 512 + at, value);
    EXPECT_EQ(found_on(damaged), "none") << "header field at " << at << " = " << value;
  }
}

TEST(partitions, the_backup_of_a_gpt_counts_where_the_first_copy_is_damaged) {
  const table_disk disk = table_disk(200)
                              .gpt({{100, 107}})
                              .backup_gpt({{100, 107}, {120, 127}}, 190)
                              .ntfs(100)
                              .ntfs(120);
  const std::string first = "100+8:ntfs or exfat ", both = first + "120+8:ntfs or exfat ";
  EXPECT_EQ(found_on(disk), first) << "the first copy is sound";
  EXPECT_EQ(found_on(disk, {1}), both) << "its header";
  EXPECT_EQ(found_on(disk, {2}), both) << "its entries";
  EXPECT_EQ(found_on(disk, {1, 199}), "none");
  EXPECT_EQ(found_on(disk, {1, 190}), "none");
  // A longer image: the header tells where its other copy stands.
  table_disk longer = disk;
  longer.content.resize(250 * 512);
  EXPECT_EQ(found_on(longer, {2}), "none");
  put(longer.content, 512, as_bytes("EFI PART"));
  put_u64(longer.content, 512 + 32, 199);
  EXPECT_EQ(found_on(longer, {2}), both);
  // Nothing is left at the start.
  table_disk wiped = disk;
  put(wiped.content, 0, bytes(34 * 512, 0));
  EXPECT_EQ(found_on(wiped), "none");
  EXPECT_EQ(found_on(wiped, {}, true), both);
  for (const size_t at : {0U, 24U}) {
    table_disk damaged = wiped;
    damaged.content[199 * 512 + at] ^= 1;
    EXPECT_EQ(found_on(damaged, {}, true), "none") << at;
  }
}

TEST(partitions, tables_of_large_sectors_bear_the_mark_at_510) {
  const table_disk gpt = table_disk(64, 4096).gpt({{16, 23}});
  EXPECT_EQ(found_on(gpt), "16+8:gpt ") << "a header is enough";
  EXPECT_EQ(found_on(table_disk(gpt).ntfs(16)), "16+8:ntfs or exfat ");
  EXPECT_EQ(found_on(table_disk(64, 4096).slot(0, 0, 7, 16, 8).ntfs(16)), "16+8:ntfs or exfat ");
}

TEST(partitions, every_field_of_the_tables_may_hold_anything) {
  table_disk mbr(220);
  mbr.slot(0, 0, 7, 70, 8).slot(0, 1, 15, 100, 100).slot(100, 0, 7, 10, 8).ntfs(70).ntfs(110);
  const table_disk gpt = table_disk(200).gpt({{100, 107}, {120, 127}}).ntfs(100).ntfs(120);
  struct range {
    const table_disk& disk;
    size_t begin, end;
  };
  const range ranges[] = {{mbr, 440, 512},
                          {mbr, 100 * 512 + 440, 101 * 512},
                          {mbr, 70 * 512, 70 * 512 + 90},
                          {gpt, 512, 512 + 92},
                          {gpt, 1024, 1024 + 56}};
  for (const range& r : ranges) {
    for (size_t at = r.begin; at < r.end; ++at) {
      for (const uint8_t value : bytes{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        table_disk damaged = r.disk;
        put(damaged.content, at, bytes(std::min<size_t>(4, r.end - at), value));
        found_on(damaged, {}, true);
        memory_disk source(damaged.content);
        choose_volume(source, 70 * 512, false);
      }
    }
  }
}

}  // namespace
}  // namespace test_support
