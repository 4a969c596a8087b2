// What composed VMDK files, sound and damaged, hold of a virtual disk.
#include <gtest/gtest.h>

#include "sources/disk/vmdk_chain.h"
#include "support/vmdk_files.h"

namespace test_support {
namespace {

constexpr size_t grain_bytes = 8 * vmdk_builder::sector;

bytes full(char letter) { return bytes(grain_bytes, static_cast<uint8_t>(letter)); }

class vmdk_disk : public vmdk_files {
 protected:
  /// The first byte of each grain (8 sectors) of the virtual disk, "." for 0; "!" if a grain is not
  /// that byte throughout. Read in pieces that fit no grain.
  static std::string grains(const std::vector<std::string>& paths) {
    ovrik::read_faults faults;
    const auto disk = ovrik::check_vmdk_chain(paths, faults).disk;
    if (disk == nullptr) return "no disk";
    std::string all, text;
    while (all.size() < disk->size() && all.size() < 0x100000) {
      std::string piece(5000, '?');
      auto size = static_cast<uint32_t>(piece.size());
      if (!disk->read(piece.data(), size, all.size())) return "not read";
      all += piece.substr(0, size);
    }
    for (size_t at = 0; at < all.size(); at += grain_bytes) {
      const bool even = all.substr(at, grain_bytes) == std::string(grain_bytes, all[at]);
      text += !even ? '!' : all[at] == 0 ? '.' : all[at];
    }
    return text;
  }
};

TEST_F(vmdk_disk, each_grain_comes_from_the_newest_file_that_holds_it) {
  const std::string base = put_disk(
      "base", base_text, {{1, full('a')}, {2, full('b')}, {3, full('c')}, {15, full('d')}});
  const bytes middle = vmdk_builder{
      .descriptor = child_text,
      .data = {{1, full('A')}, {9, full('E')}},
      .zeroed = {2, 4}}.file();
  const std::string second = put_file("middle", middle);
  const std::string newest = put_disk("newest", vmdk_descriptor_text("00000000", "00000002"),
                                      {{4, full('F')}, {9, full('G')}});
  EXPECT_EQ(grains({base, second}), ".A.c.....E.....d");
  EXPECT_EQ(grains({newest, base, second}), ".A.cF....G.....d") << "in any order";
  EXPECT_EQ(grains({newest, base}), "no disk");
  EXPECT_EQ(grains({newest, second}), "no disk");
  const std::string one = put_disk("one", vmdk_descriptor_text("3", "4"));
  const std::string two = put_disk("two", vmdk_descriptor_text("4", "3"));
  EXPECT_EQ(grains({base, one, two}), ".abc...........d") << "a ring beside the chain";
  EXPECT_EQ(grains({base, put_disk("same", base_text, {{1, full('x')}})}), ".abc...........d");

  // Grains of another size, of which one begins within a grain of the base.
  const vmdk_builder fine{.descriptor = child_text,
                          .grain_sectors = 2,
                          .grains = 64,
                          .data = {{5, bytes(1024, 'X')}, {20, bytes(1024, 'Y')}}};
  EXPECT_EQ(grains({base, put_file("fine", fine.file())}), ".!bc.!.........d");

  // A table that cannot be read hides what is older, one that is not there does not.
  const std::tuple<size_t, uint32_t, const char*> tables[] = {{0, 0xFFFFFF, "no disk"},
                                                              {4, 0xFFFFFF, ".A.c.....E.....d"},
                                                              {12, 0xFFFFFF, ".A.c.....E......"},
                                                              {12, 0, ".A.c.....E.....d"}};
  for (const auto& [at, sector, outcome] : tables) {
    bytes damaged = middle;
    put_u32(damaged, 3 * 512 + at, sector);
    EXPECT_EQ(grains({base, put_file("damaged", damaged)}), outcome)
        << "directory entry at " << at << " = " << sector;
  }

  // Grains in another order than on the disk.
  bytes cut = read_file(base);
  put_u64(cut, 4 * 512 + 4, 32ULL << 32 | 40);
  EXPECT_EQ(grains({put_file("swapped", cut)}), ".bac...........d");
  // A file that ends within a grain: the rest of it is zeros.
  cut.resize(cut.size() - 2 * vmdk_builder::sector);
  EXPECT_EQ(grains({put_file("cut", cut)}), ".bac...........!");
}

TEST_F(vmdk_disk, more_tables_than_are_kept_give_the_same_in_any_order) {
  // A header of 1 sector, 2 of descriptor, a directory of 0x4000 tables of 0x200 entries.
  constexpr uint64_t tables = 0x4000, table_bytes = 0x800, sector = vmdk_builder::sector;
  constexpr uint64_t first_table = 3 * sector + 4 * tables;
  constexpr uint64_t grains_at = first_table + tables * table_bytes;
  bytes file = vmdk_builder{.descriptor = base_text}.file();
  file.resize(3 * sector);
  put_u64(file, 12, tables * 0x200);
  put_u64(file, 20, 1);
  put_u32(file, 44, 0x200);
  put_u64(file, 64, grains_at / sector);
  file.resize(grains_at);
  bytes grains;
  for (uint64_t table = 0; table < tables; ++table) {
    put_u32(file, 3 * sector + 4 * table,
            static_cast<uint32_t>((first_table + table * table_bytes) / sector));
    if (table % 97 != 0) continue;
    put_u32(file, first_table + table * table_bytes + 4 * (1 + table % 0x100),
            static_cast<uint32_t>((file.size() + grains.size()) / sector));
    append(grains, bytes(sector, static_cast<uint8_t>(table / 97 + 1)));
  }
  append(file, grains);
  ovrik::read_faults unread;
  const auto disk = ovrik::check_vmdk_chain({put_file("large", file)}, unread).disk;
  ASSERT_NE(disk, nullptr);
  for (uint64_t i = 0; i < 2 * tables; ++i) {
    const uint64_t table = i * 5003 % tables;
    bytes got(3 * sector);
    auto size = static_cast<uint32_t>(got.size());
    const uint64_t middle = table * 0x200 + 1 + table % 0x100;
    ASSERT_TRUE(disk->read(got.data(), size, (middle - 1) * sector));
    bytes wanted(3 * sector);
    if (table % 97 == 0) put(wanted, sector, bytes(sector, static_cast<uint8_t>(table / 97 + 1)));
    ASSERT_TRUE(got == wanted) << table;
  }
}

TEST_F(vmdk_disk, descriptors_may_be_written_in_many_ways) {
  const std::string base = put_disk("base", base_text, {{1, full('a')}});
  const std::string shouted = put_disk(
      "shouted", "ENCODING=\"UTF-8\"\r\nCID=ABCDEF01\r\nPARENTCID=00000001\r\n", {{2, full('b')}});
  const std::string third =
      put_disk("third", "xCID=7\ncid=00000009\nparentcid=abcdef01\n", {{3, full('c')}});
  EXPECT_EQ(grains({shouted, third, base}), ".abc............");
  EXPECT_EQ(grains({put_disk("late", std::string("CID=1\n\0parentCID=ffffffff", 24))}), "no disk");
}

TEST_F(vmdk_disk, every_field_may_hold_anything_and_the_file_may_end_anywhere) {
  const bytes sound =
      vmdk_builder{.descriptor = base_text, .data = {{1, full('a')}, {14, full('b')}}}.file();
  struct field {
    size_t at, width;
    std::vector<uint64_t> values;
    const char* outcome = "no disk";
  };
  const uint64_t most = ~uint64_t{0};
  const size_t directory = 3 * 512, first_table = 4 * 512;
  const field fields[] = {
      {0, 4, {0}},
      {12, 8, {most}},
      {12, 8, {0}, ""},
      {20, 8, {0, most}},
      {20, 8, {most >> 10}, "................"},
      {28, 8, {0, 1 << 20, most}},
      {36, 8, {0, most}},
      {36, 8, {most >> 12}, ".a............b."},
      {44, 4, {0}},
      {44, 4, {most}, ".a.............."},
      {56, 8, {0, 32, most / 512 + 4, most}},
      {64, 8, {0, 3, 1 << 30, most}},
      {directory, 4, {0, most}},
      {directory + 12, 4, {0, most}, ".a.............."},
      {first_table + 4, 4, {2}, ".!............b."},
      {first_table + 4, 4, {most}, "..............b."},
  };
  for (const field& f : fields) {
    for (const uint64_t value : f.values) {
      bytes damaged = sound;
      put_number(damaged, f.at, f.width, value);
      EXPECT_EQ(grains({put_file("damaged", damaged)}), f.outcome) << f.at << " = " << value;
    }
  }
  const size_t metadata = 32 * vmdk_builder::sector;
  for (size_t size = 0; size <= metadata; size += 256) {
    const bytes cut(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(grains({put_file("cut", cut)}), size < metadata ? "no disk" : "................")
        << size;
  }
}

}  // namespace
}  // namespace test_support
