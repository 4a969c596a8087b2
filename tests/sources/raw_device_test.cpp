// What the block reader makes of the answers of devices, failures included.
#include "sources/raw_device.h"

#include <gtest/gtest.h>

#include "support/memory_devices.h"

namespace test_support {
namespace {

using ovrik::device_kind;
using ovrik::open_device;

bytes numbered(size_t size) {
  bytes content(size);
  for (size_t i = 0; i < size; ++i) content[i] = static_cast<uint8_t>(i ^ i >> 8);
  return content;
}

TEST(raw_device, paths_lead_to_devices) {
  struct path_case {
    device_kind kind;
    const char *path, *opened;
  };
  const path_case cases[] = {
      {device_kind::volume, "c:", "\\\\.\\c:"},
      {device_kind::volume, "C:\\", "\\\\.\\C:"},
      {device_kind::device, "D:", "\\\\.\\D:"},
      {device_kind::volume, "7:", "7:"},
      {device_kind::device, "\\\\?\\GLOBALROOT\\Device\\X3", "\\\\?\\GLOBALROOT\\Device\\X3"},
      {device_kind::volume, "\\\\.\\D:", "\\\\.\\D:"},
      {device_kind::physical_drive, "", "\\\\.\\PhysicalDrive0"},
      {device_kind::physical_drive, "D:", "\\\\.\\PhysicalDrive0"},
  };
  for (const path_case& c : cases) {
    memory_devices calls;
    EXPECT_EQ(open_device(c.kind, c.path, calls), nullptr);  // none of them is there
    EXPECT_EQ(calls.opened, std::vector<std::string>{c.opened}) << c.path;
  }
  memory_devices calls;
  EXPECT_EQ(open_device(device_kind::volume, "", calls), nullptr);
  EXPECT_TRUE(calls.opened.empty());
}

TEST(raw_device, the_size_is_the_best_that_a_device_tells) {
  using answers = std::map<uint32_t, bytes>;
  constexpr uint64_t not_opened = UINT64_MAX;
  bytes cut = geometry_ex(1);
  cut.pop_back();
  struct size_case {
    const char* name;
    answers told;
    uint64_t by_letter, by_name, drive;  // as "C:", as "\\.\C:", as the first drive
  };
  const size_case cases[] = {
      {"nothing at all", {}, not_opened, 4096, not_opened},
      {"only a partition", {{ask_partition, partition(7000)}}, not_opened, 7000, not_opened},
      {"large geometry", {{ask_geometry_ex, geometry_ex(9000)}}, 9000, 9000, 9000},
      {"plain geometry",
       {{ask_geometry, geometry(3)}},
       3 * 2 * 4 * 512,
       3 * 2 * 4 * 512,
       3 * 2 * 4 * 512},
      {"both geometries",
       {{ask_geometry_ex, geometry_ex(9000)}, {ask_geometry, geometry(3)}},
       9000,
       9000,
       9000},
      {"a cut answer counts as none",
       {{ask_geometry_ex, cut}, {ask_geometry, geometry(1)}},
       8 * 512,
       8 * 512,
       8 * 512},
      {"a partition of an MBR disk",
       {{ask_geometry_ex, geometry_ex(9000)}, {ask_partition, partition(8000)}},
       8000,
       8000,
       9000},
      {"a partition of a GPT disk",
       {{ask_geometry_ex, geometry_ex(9000)}, {ask_partition_ex, partition_ex(8000)}},
       8000,
       8000,
       9000},
      {"an empty partition",
       {{ask_geometry_ex, geometry_ex(9000)}, {ask_partition, partition(0)}},
       9000,
       9000,
       9000},
      {"no sector size", {{ask_geometry_ex, geometry_ex(9000, 0)}}, not_opened, 4096, not_opened},
      {"an absurd sector size",
       {{ask_geometry, geometry(3, 0x80000000)}},
       not_opened,
       4096,
       not_opened},
      {"more cylinders than a size can hold",
       {{ask_geometry, geometry(UINT64_MAX)}},
       INT64_MAX,
       INT64_MAX,
       INT64_MAX},
      {"a negative size",
       {{ask_geometry_ex, geometry_ex(UINT64_MAX)}},
       INT64_MAX,
       INT64_MAX,
       INT64_MAX},
  };
  for (const size_case& c : cases) {
    memory_devices calls;
    for (const char* name : {"\\\\.\\C:", "\\\\.\\PhysicalDrive0"}) {
      calls.devices[name] = {.answers = c.told, .handle_size = 4096};
    }
    const auto size_of = [&calls](device_kind kind, const char* path) {
      const auto disk = open_device(kind, path, calls);
      return disk == nullptr ? not_opened : disk->size();
    };
    EXPECT_EQ(size_of(device_kind::volume, "C:"), c.by_letter) << c.name;
    EXPECT_EQ(size_of(device_kind::volume, "\\\\.\\C:"), c.by_name) << c.name;
    EXPECT_EQ(size_of(device_kind::device, "\\\\.\\C:"), c.by_letter) << c.name;
    EXPECT_EQ(size_of(device_kind::physical_drive, ""), c.drive) << c.name;
  }
}

TEST(raw_device, reads_of_any_place_and_length_are_whole_sectors) {
  for (const uint32_t sector : {512U, 520U, 4096U}) {
    const uint32_t total = 8 * sector;
    memory_devices calls;
    // The device holds more than it says, as a volume does behind its file system.
    calls.devices["\\\\.\\C:"] = {.content = numbered(total + 3 * sector),
                                  .answers = {{ask_geometry_ex, geometry_ex(total, sector)}},
                                  .sector = sector};
    const bytes& content = calls.devices["\\\\.\\C:"].content;
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
    bytes block(16);
    for (const auto& [wanted, offset] :
         {std::pair<uint32_t, uint64_t>{0, 0}, {1, total}, {1, UINT64_MAX}}) {
      uint32_t size = wanted;
      EXPECT_FALSE(disk->read(block.data(), size, offset)) << offset;
    }
  }
}

TEST(raw_device, what_does_not_come_is_not_given) {
  memory_devices calls;
  memory_device& device = calls.devices["\\\\.\\C:"];
  device = {.content = numbered(3 * 512 + 100),
            .answers = {{ask_geometry_ex, geometry_ex(1 << 20)}}};
  const auto disk = open_device(device_kind::volume, "C:", calls);
  ASSERT_NE(disk, nullptr);
  struct end_case {
    uint64_t offset;
    uint32_t wanted, given;  // 0: the read fails
  };
  for (const end_case& c : {end_case{1024, 1024, 612},
                            {1030, 1000, 606},
                            {1600, 512, 36},
                            {1636, 512, 0},
                            {2048, 512, 0},
                            {4000, 1, 0}}) {
    bytes block(c.wanted);
    uint32_t size = c.wanted;
    EXPECT_EQ(disk->read(block.data(), size, c.offset), c.given != 0) << c.offset;
    EXPECT_EQ(size, c.given) << c.offset;
  }
  device.reads_fail = true;  // answers geometry, but not reads
  for (const uint64_t offset : {0U, 1U}) {
    bytes block(512);
    uint32_t size = 512;
    EXPECT_FALSE(disk->read(block.data(), size, offset));
    EXPECT_EQ(size, 0U);
  }
}

}  // namespace
}  // namespace test_support
