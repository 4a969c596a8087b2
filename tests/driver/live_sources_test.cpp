// Hives of a running system: held files, its volume, its shadow copies.
#include <gtest/gtest.h>

#include "driver/hive_source.h"
#include "driver/volume_source.h"
#include "sources/disk/shadow_copy.h"
#include "support/memory_devices.h"
#include "support/ntfs_builder.h"
#include "support/system_hive.h"

namespace test_support {
namespace {

using namespace ovrik;

class live_sources : public testing::Test {
 protected:
  /// Devices with a volume each that holds a SYSTEM hive where Windows keeps it.
  live_sources() {
    ntfs_builder built(256);
    const bytes hive = system_hive_with({}).bytes();
    const auto clusters = static_cast<uint8_t>((hive.size() + 1023) / 1024);
    built.cluster(128, hive);
    const attribute_form form = {.size = hive.size()};
    built.record(13, {resident_attribute(0x30, file_name(12, u"SyStem")),
                      non_resident_attribute(0x80, {0x21, clusters, 128, 0, 0}, form)});
    for (const std::string& name : {std::string("\\\\.\\c:"), std::string("\\\\.\\D:"), copy}) {
      devices.devices[name] = {.content = built.volume,
                               .answers = {{ask_geometry_ex, geometry_ex(built.volume.size())}}};
    }
  }

  volume_place place(const std::string& inner = default_hive_path) {
    return {.inner_path = inner, .opening = opening, .devices = devices};
  }
  bool opens(const std::string& path) {
    return open_hive_source(path, opening, devices) != nullptr;
  }
  bool opens_live(const std::string& path) { return open_live_hive(path, place()) != nullptr; }

  const std::string copy = shadow_copy_device("3");
  memory_devices devices;
  diagnostics_log log;
  read_faults faults;
  hive_opening opening = {log, faults};
};

TEST_F(live_sources, the_volume_is_that_of_the_drive_letter) {
  EXPECT_TRUE(opens_live("c:\\Windows\\System32\\config\\system") && opens_live("\\\\.\\D:"));
  EXPECT_FALSE(opens_live("E:\\Windows"));
  EXPECT_EQ(devices.opened, (std::vector<std::string>{"\\\\.\\c:", "\\\\.\\D:", "\\\\.\\E:"}));
  devices.devices["\\\\.\\D:"].reads_fail = true;
  devices.devices["\\\\.\\c:"].content.assign(1 << 18, 0);  // not NTFS
  EXPECT_FALSE(opens_live("D:") || opens_live("c:"));
}

TEST_F(live_sources, a_hive_that_does_not_open_is_read_from_its_volume) {
  EXPECT_TRUE(opens("c:\\windows/System32\\config\\SYSTEM"));
  EXPECT_FALSE(opens("c:\\windows\\system32\\config\\none"));
  // Without a drive letter no volume is touched.
  for (const char* path : {"windows\\system32\\config\\system", "cd", "c:", "", "1:\\system"}) {
    EXPECT_FALSE(opens(path)) << path;
  }
  EXPECT_EQ(devices.opened.size(), 2U);
}

TEST_F(live_sources, a_shadow_copy_is_read_from_its_device) {
  EXPECT_NE(open_shadow_copy_hive(copy, place()), nullptr);
  EXPECT_NE(open_shadow_copy_hive(copy, place(copy + default_hive_path)), nullptr);
  EXPECT_EQ(open_shadow_copy_hive(copy + "0", place()), nullptr);  // no such number
  devices.devices[copy].answers.clear();
  EXPECT_EQ(open_shadow_copy_hive(copy, place()), nullptr);
}

}  // namespace
}  // namespace test_support
