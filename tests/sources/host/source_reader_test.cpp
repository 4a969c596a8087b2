#include "sources/host/source_reader.h"

#include <gtest/gtest.h>

#include "sources/disk/retried_disk.h"
#include "support/faulty_source.h"
#include "support/memory_disk.h"

namespace test_support {
namespace {

using namespace ovrik;

/// Each fault as "offset+length", with a blank behind it.
std::string text_of(const read_faults& faults) {
  std::string text;
  for (const read_fault& fault : faults.all()) {
    text += std::to_string(fault.offset) + "+" + std::to_string(fault.length) + " ";
  }
  return text;
}

TEST(source_reader, loses_only_what_cannot_be_read) {
  const bytes content(20000, 'x');
  const struct {
    const char* what;
    fault_plan plan;
    uint64_t offset;
    size_t size;
    const char* lost;
    size_t most_calls;
  } rows[] = {
      {"nothing", {content}, 100, 20000, "", 1},
      {"behind the end", {content}, 20000, 10, "", 0},
      {"a sector", {content, {{5120, 5632}}}, 0, 20000, "5120+512 ", 20},
      {"a sector, all or nothing", {content, {{5120, 5632}}, true}, 0, 20000, "5120+512 ", 20},
      {"a few bytes of one", {content, {{5200, 5210}}}, 0, 20000, "5200+432 ", 20},
      {"a block", {content, {{4096, 8192}}, true}, 0, 20000, "4096+4096 ", 20},
      {"from the middle of a block on", {content, {{4096, 8192}}}, 6000, 20000, "6000+2192 ", 20},
      {"up to the middle of one", {content, {{0, 4096}}}, 10, 100, "10+100 ", 4},
      {"two blocks apart",
       {content, {{0, 4096}, {12288, 16384}}},
       0,
       20000,
       "0+4096 12288+4096 ",
       40},
      {"the end", {content, {{19900, 20000}}}, 0, 20000, "19900+100 ", 20},
      {"everything", {content, {{0, 20000}}}, 0, 20000, "0+20000 ", 60},
      {"what a shorter file had",
       {.content = content, .shrinks_to = 9000},
       0,
       20000,
       "9000+11000 ",
       2},
      {"all of a file that is empty now",
       {.content = content, .shrinks_to = 0},
       0,
       20000,
       "0+20000 ",
       1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    size_t calls = 0;
    source_reader reader(std::make_unique<faulty_source>(row.plan, calls), "name");
    read_faults faults;
    bytes buffer(row.size, '?');
    size_t size = row.size;
    const bool read = reader.read(buffer.data(), size, row.offset, faults);
    EXPECT_EQ(text_of(faults), row.lost);
    EXPECT_LE(calls, row.most_calls);
    EXPECT_EQ(size, std::min<size_t>(row.size, content.size() - row.offset));
    uint64_t lost = 0;
    bytes expected(size, 'x');
    for (const read_fault& fault : faults.all()) {
      std::fill_n(expected.begin() + static_cast<ptrdiff_t>(fault.offset - row.offset),
                  fault.length, uint8_t{0});
      lost += fault.length;
    }
    expected.resize(row.size, '?');
    EXPECT_TRUE(buffer == expected);
    EXPECT_EQ(read, lost != size);
  }
}

TEST(source_reader, gives_up_a_disk_that_fails_everywhere_but_finds_what_comes_again) {
  constexpr size_t all = 64 << 20;
  const fault_plan plan = {bytes(all, 'x'), {{0, all - (8 << 20)}}, true};
  size_t calls = 0;
  source_reader reader(std::make_unique<faulty_source>(plan, calls), "disk");
  read_faults faults;
  bytes buffer(all);
  size_t size = all;
  EXPECT_TRUE(reader.read(buffer.data(), size, 0, faults));
  EXPECT_EQ(text_of(faults), std::to_string(all - (8 << 20)).insert(0, "0+") + " ");
  EXPECT_LT(calls, 2000u);
  EXPECT_TRUE(
      std::all_of(buffer.end() - (8 << 20), buffer.end(), [](uint8_t b) { return b == 'x'; }));
}

TEST(read_faults, counts_what_touches_or_overlaps_once) {
  read_faults faults;
  for (const auto& [offset, length] : {std::pair(100, 50),
                                       {300, 10},
                                       {150, 10},
                                       {120, 5},
                                       {90, 20},
                                       {500, 0},
                                       {305, 100},
                                       {155, 145},
                                       {600, 1}}) {
    faults.add("a", static_cast<uint64_t>(offset), static_cast<uint64_t>(length));
  }
  EXPECT_EQ(text_of(faults), "90+315 600+1 ");
  faults.add("b", 0, 1);
  faults.add(read_faults(faults));
  EXPECT_EQ(text_of(faults), "90+315 600+1 0+1 ");
}

TEST(retried_disk, reads_whole_up_to_its_end) {
  read_faults faults;
  const auto disk = retried_disk(
      std::make_unique<memory_disk>(bytes(10000, 'x'), std::set<uint64_t>{3, 4}), "d", faults);
  EXPECT_EQ(disk->size(), 10000u);
  bytes buffer(9000);
  auto size = static_cast<uint32_t>(buffer.size());
  EXPECT_TRUE(disk->read(buffer.data(), size, 1500));
  EXPECT_EQ(size, 8500u);
  EXPECT_EQ(text_of(faults), "1536+1024 ");
  EXPECT_FALSE(disk->read(buffer.data(), size, 10000));
  EXPECT_EQ(retried_disk(nullptr, "d", faults), nullptr);
}

}  // namespace
}  // namespace test_support
