// The base block, the place of the first bin, the limits of a hive file and the bound of a cell.

#include "hive/hive_header.h"

#include <filesystem>

#include "hive/hive_root.h"
#include "opened_hive.h"

namespace ovrik {
namespace {

using namespace test_support;

struct base_case {
  const char* name;
  const char* marker;
  size_t bin_at;
  uint32_t base;  ///< 0: refused
  size_t size = 0x4000;
  uint32_t bin_offset = 0;
};
const base_case base_cases[] = {{"usual", "", 0x1000, 0x1000},
                                {"sign", "", 0x230, 0x1000},
                                {"moved", "", 0x2200, 0x2200},
                                {"old log", "DIRT", 0x2200, 0x1000},
                                {"new log", "HvLE", 0x2200, 0x1000},
                                {"with an offset", "", 0x2200, 0x1000, 0x4000, 5},
                                {"4496 bytes behind", "", 0x2000, 0x1000, 0x2000 + 4496},
                                {"4497 bytes behind", "", 0x2000, 0x2000, 0x2000 + 4497},
                                {"shift 3", "", 0x2003, 0x2003},
                                {"shift 4", "", 0x2004, 0},
                                {"stride 512", "", 0x1008, 0},
                                {"stride 8", "HvLE", 0x100B, 0x1000},
                                {"stride 8, shift 4", "HvLE", 0x100C, 0},
                                {"last", "", 0x3000, 0x1000, 0x3005},
                                {"behind the last", "", 0x3001, 0, 0x3005},
                                {"least", "", 0x1000, 0x1000, 4496},
                                {"too short", "", 0x1000, 0, 4495}};

bytes base_block(size_t size, size_t bin_at) {
  bytes block(size);
  put(block, 0, as_bytes("regf"));
  put_u32(block, 0x24, 0x20);
  put(block, bin_at, as_bytes("hbin"));
  return block;
}

TEST(hive_header, finds_the_base) {
  for (const base_case& row : base_cases) {
    bytes block = base_block(row.size, row.bin_at);
    put(block, 0x200, as_bytes(row.marker));
    if (row.bin_offset != 0) put_u32(block, row.bin_at + 4, row.bin_offset);
    uint32_t root = 0x20;
    std::string name;
    EXPECT_EQ(check_hive_header(byte_view(block), row.size, root, name), row.base != 0) << row.name;
    EXPECT_EQ(root, row.base + 0x20) << row.name;
    EXPECT_TRUE(row.base == 0 || hive_base == row.base) << row.name;
    EXPECT_FALSE(check_hive_header(byte_view(block), 4495, root, name)) << row.name;
    block[3] = 'F';
    EXPECT_FALSE(check_hive_header(byte_view(block), row.size, root, name)) << row.name;
  }
}

const std::pair<const char16_t*, const char*> name_cases[] = {
    {u"temRoot\\System32\\Config\\SYSTEM", "SYSTEM"},
    {u"C:/Windows/SYSTEM", "SYSTEM"},
    {u"C:\\SYS/TEM", "SYS/TEM"},
    {u"a\\..", "."},
    {u"Config\\", ""},
    {u"H\u00E4\u20AC", "H\xC3\xA4\xE2\x82\xAC"},
    {u"Config\\abcdefghijklmnopqrstuvwxyz", "abcdefghijklmnopqrstuvwxy"}};  // 33 units

TEST(hive_header, names_the_hive_by_its_file) {
  for (const auto& [stored, expected] : name_cases) {
    bytes block = base_block(0x4000, 0x1000), units;
    append_utf16(units, stored);
    put(block, 0x30, units);
    uint32_t root = 0;
    std::string name = "old";
    EXPECT_TRUE(check_hive_header(byte_view(block), block.size(), root, name));
    EXPECT_EQ(name, expected);
  }
}

TEST(reg_hive, without_a_name_has_that_of_its_first_telling_subkey) {
  const std::pair<const char*, const char*> names[] = {
      {"SELECT", "System"},    {"Control Panel", "ntuser.dat"},
      {"Classes", "Software"}, {"Local Settings", "usrclass.dat"},
      {"SAM", "SAM"},          {"RXACT", "Security"},
      {"Root", "AmCache.bin"}, {"Other", ""}};
  for (size_t first = 0; first < std::size(names); ++first) {
    hive_builder nameless("");
    for (size_t i = first; i < std::size(names); ++i) nameless.root.at(names[i].first);
    uint32_t root = 0;
    std::string name = "old";
    EXPECT_TRUE(find_root(opened_hive(nameless.bytes()).hive, root, name));
    EXPECT_EQ(name, names[first].second);
    EXPECT_EQ(root, nameless.key_at(""));
  }
}

TEST(reg_hive, opens_files_within_the_limits) {
  const struct {
    size_t size, bin_at;
    bool opens;
  } rows[] = {{4496, 0x1000, false},     {4497, 0x1000, true},       {0x12000, 0xFE00, true},
              {0x12000, 0x10000, false}, {0x2FFFFFFF, 0x1000, true}, {0x30000000, 0x1000, false}};
  for (const auto& row : rows) {
    const temp_dir folder;
    write_file(folder.path("hive"), base_block(row.bin_at + 4, row.bin_at));
    std::filesystem::resize_file(folder.path("hive"), row.size);
    const hive_file file(folder.path("hive"));
    const reg_hive& hive = file.hive;
    EXPECT_EQ(file.ok, row.opens) << row.size;
    EXPECT_EQ(hive.usable(), row.opens) << row.size;
    EXPECT_EQ(hive.size(), row.opens ? row.size : 0);
  }
}

TEST(reg_hive, bounds_cells_by_the_size_on_both_sides) {
  const opened_hive opened(hive_builder().bytes());
  const uint32_t size = opened.hive.size();
  EXPECT_EQ(opened.hive.cell_at(size - 1)->size(), 1u);
  for (const uint32_t at : {size, 0u - 1, 0u - size})
    EXPECT_TRUE(opened.hive.cell_at(at).value().empty());
  for (const uint32_t at : {size + 1, 0u - size - 1, 0x7FFFFFFFu}) {
    EXPECT_FALSE(opened.hive.cell_at(at)) << at;
  }
}

TEST(reg_hive, reads_as_stored_whatever_its_sums_and_place) {
  bytes image = system_hive_with(bytes(5000, 'x')).bytes();
  put_u32(image, 0x04, 9);
  put_u32(image, 0x1FC, 1);
  bytes moved = image;
  moved.insert(moved.begin() + 0x1000, 0x1000, 0);
  for (const bytes& hive : {image, moved, image}) {
    EXPECT_EQ(queried(hive, cache_key_path(1) + "\\AppCompatCache"), "5000 ");
  }
}

}  // namespace
}  // namespace ovrik
