// What the block reader makes of the answers of devices, failures included.
#include "sources/disk/raw_device.h"

#include <gtest/gtest.h>

#include "support/memory_devices.h"

namespace test_support {
namespace {

using ovrik::device_kind;
using ovrik::open_device;

const std::string name_of_c = "\\\\.\\C:";

bytes numbered(size_t size) {
  bytes content(size);
  for (size_t i = 0; i < size; ++i) content[i] = static_cast<uint8_t>(i ^ i >> 8);
  return content;
}

TEST(raw_device, paths_lead_to_devices) {
  struct path_case {
    device_kind kind;
    const char* path;
    std::vector<std::string> opened;
  };
  const path_case cases[] = {
      {device_kind::volume, "c:", {"\\\\.\\c:"}},
      {device_kind::volume, "C:\\", {"\\\\.\\C:"}},
      {device_kind::device, "D:", {"\\\\.\\D:"}},
      {device_kind::volume, "7:", {"7:"}},
      {device_kind::device, "\\\\?\\GLOBALROOT\\X3", {"\\\\?\\GLOBALROOT\\X3"}},
      {device_kind::volume, "\\\\?\\Volume{4}\\", {"\\\\?\\Volume{4}"}},
      {device_kind::physical_drive, "", {"\\\\.\\PhysicalDrive0"}},
      {device_kind::physical_drive, "D:", {"\\\\.\\PhysicalDrive0"}},
      {device_kind::volume, "", {}},
  };
  for (const path_case& c : cases) {
    memory_devices calls;
    EXPECT_EQ(open_device(c.kind, c.path, calls), nullptr);  // none of them is there
    EXPECT_EQ(calls.opened, c.opened) << c.path;
  }
}

TEST(raw_device, the_size_is_the_best_that_a_device_tells) {
  const bytes large = geometry_ex(9000), plain = geometry(3);
  const bytes cut(large.begin(), large.end() - 1);
  constexpr uint64_t plain_size = 3 * 2 * 4 * 512, most = INT64_MAX, not_opened = UINT64_MAX;
  struct size_case {
    std::map<uint32_t, bytes> told;
    uint64_t by_letter, by_name, drive;  // as "C:", as "\\.\C:", as the first drive
  };
  const size_case cases[] = {
      {{}, not_opened, 4096, not_opened},
      {{{ask_partition, partition(7000)}}, not_opened, 7000, not_opened},
      {{{ask_geometry_ex, large}, {ask_geometry, plain}}, 9000, 9000, 9000},
      {{{ask_geometry_ex, cut}, {ask_geometry, plain}}, plain_size, plain_size, plain_size},
      {{{ask_geometry_ex, large}, {ask_partition, partition(8000)}}, 8000, 8000, 9000},
      {{{ask_geometry_ex, large}, {ask_partition_ex, partition_ex(8000)}}, 8000, 8000, 9000},
      {{{ask_geometry_ex, large}, {ask_partition, partition(0)}}, 9000, 9000, 9000},
      {{{ask_geometry_ex, geometry_ex(9000, 0)}}, not_opened, 4096, not_opened},
      {{{ask_geometry, geometry(3, 0x80000000)}}, not_opened, 4096, not_opened},
      {{{ask_geometry, geometry((1ULL << 52) + 1)}}, most, most, most},
      {{{ask_geometry_ex, geometry_ex(UINT64_MAX)}}, most, most, most},
  };
  for (const size_case& c : cases) {
    SCOPED_TRACE(&c - cases);
    memory_devices calls;
    for (const std::string& name : {name_of_c, std::string("\\\\.\\PhysicalDrive0")}) {
      calls.devices[name] = {.answers = c.told, .handle_size = 4096};
    }
    const auto size_of = [&calls](device_kind kind, const std::string& path) {
      const auto disk = open_device(kind, path, calls);
      return disk == nullptr ? not_opened : disk->size();
    };
    EXPECT_EQ(size_of(device_kind::volume, "C:"), c.by_letter);
    EXPECT_EQ(size_of(device_kind::volume, name_of_c), c.by_name);
    EXPECT_EQ(size_of(device_kind::device, name_of_c), c.by_letter);
    EXPECT_EQ(size_of(device_kind::physical_drive, ""), c.drive);
  }
}

TEST(raw_device, reads_of_any_place_and_length_are_whole_sectors) {
  for (const uint32_t sector : {512U, 520U, 4096U}) {
    const uint32_t total = 8 * sector;
    // The device holds more than it says, as a volume does behind its file system.
    const bytes content = numbered(total + 3 * sector);
    memory_devices calls;
    calls.devices[name_of_c] = {.content = content,
                                .answers = {{ask_geometry_ex, geometry_ex(total, sector)}},
                                .sector = sector};
    const auto disk = open_device(device_kind::volume, "C:", calls);
    ASSERT_NE(disk, nullptr);
    for (const uint32_t offset : {0U, 1U, sector - 1, sector, sector + 7, total - 1}) {
      for (const uint32_t wanted : {1U, sector - 1, sector, sector + 1, 2 * sector}) {
        bytes block(wanted);
        uint32_t size = wanted;
        ASSERT_TRUE(disk->read(block.data(), size, offset)) << offset << "+" << wanted;
        const auto from = content.begin() + offset;
        EXPECT_EQ(bytes(from, from + wanted), block) << offset << "+" << wanted;
        EXPECT_EQ(size, wanted);
      }
    }
  }
}

TEST(raw_device, what_does_not_come_is_not_given) {
  memory_devices calls;
  memory_device& device = calls.devices[name_of_c];
  device = {.content = numbered(3 * 512 + 100),
            .answers = {{ask_geometry_ex, geometry_ex(1 << 20)}}};
  const auto disk = open_device(device_kind::volume, "C:", calls);
  ASSERT_NE(disk, nullptr);
  const auto given = [&disk](uint64_t offset, uint32_t wanted) {
    bytes block(wanted);
    uint32_t size = wanted;
    const bool read = disk->read(block.data(), size, offset);
    EXPECT_EQ(read, size != 0) << offset;
    return size;
  };
  EXPECT_EQ(given(1024, 1024), 612U);
  EXPECT_EQ(given(1030, 1000), 606U);
  EXPECT_EQ(given(1600, 512), 36U);
  const std::pair<uint64_t, uint32_t> nothing[] = {{1636, 512}, {2048, 512},  {4000, 1},
                                                   {0, 0},      {1 << 20, 1}, {UINT64_MAX, 1}};
  for (const auto& [offset, wanted] : nothing) EXPECT_EQ(given(offset, wanted), 0U) << offset;
  device.reads_fail = true;  // answers geometry, but not reads
  for (const uint64_t offset : {0U, 1U}) EXPECT_EQ(given(offset, 512), 0U);
}

}  // namespace
}  // namespace test_support
