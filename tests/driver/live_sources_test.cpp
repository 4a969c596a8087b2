// Hives of a running system: held files, its volume, its shadow copies.
#include <gtest/gtest.h>

#include "driver/hive_source.h"
#include "driver/volume_source.h"
#include "sources/shadow_copy.h"
#include "support/memory_devices.h"
#include "support/ntfs_builder.h"
#include "support/system_hive.h"
#include "support/temp_dir.h"

namespace test_support {
namespace {

using namespace ovrik;

/// A volume with a SYSTEM hive where Windows keeps it.
bytes volume_with_hive() {
  ntfs_builder built(256);
  const bytes hive = system_hive_with({}).bytes();
  constexpr size_t hive_cluster = 128;
  const auto clusters =
      static_cast<uint8_t>((hive.size() + built.cluster_bytes - 1) / built.cluster_bytes);
  built.cluster(hive_cluster, hive);
  built.record(13, {resident_attribute(0x30, file_name(12, u"SyStem")),
                    non_resident_attribute(0x80, {0x21, clusters, hive_cluster, 0, 0},
                                           {.size = hive.size()})});
  return built.volume;
}

class live_sources : public testing::Test {
 protected:
  live_sources() {
    const bytes volume = volume_with_hive();
    const memory_device device = {.content = volume,
                                  .answers = {{ask_geometry_ex, geometry_ex(volume.size())}}};
    for (const std::string& name :
         {std::string("\\\\.\\c:"), std::string("\\\\.\\D:"), copy_three}) {
      devices.devices[name] = device;
    }
  }

  volume_place place(const std::string& inner = default_hive_path) {
    return {.inner_path = inner, .log = log, .devices = devices};
  }

  const std::string copy_three = shadow_copy_device("3");
  memory_devices devices;
  diagnostics_log log;
};

TEST_F(live_sources, the_volume_is_that_of_the_drive_letter) {
  EXPECT_NE(open_live_hive("c:\\Windows\\System32\\config\\system", place()), nullptr);
  EXPECT_NE(open_live_hive("\\\\.\\D:", place()), nullptr);
  EXPECT_EQ(open_live_hive("E:\\Windows", place()), nullptr);
  EXPECT_EQ(devices.opened, (std::vector<std::string>{"\\\\.\\c:", "\\\\.\\D:", "\\\\.\\E:"}));
  devices.devices["\\\\.\\D:"].reads_fail = true;
  devices.devices["\\\\.\\c:"].content.assign(1 << 18, 0);  // not NTFS
  EXPECT_EQ(open_live_hive("D:", place()), nullptr);
  EXPECT_EQ(open_live_hive("c:", place()), nullptr);
}

TEST_F(live_sources, a_hive_that_does_not_open_is_read_from_its_volume) {
  EXPECT_NE(open_hive_source("c:\\windows/System32\\config\\SYSTEM", log, devices), nullptr);
  EXPECT_EQ(open_hive_source("c:\\windows\\system32\\config\\none", log, devices), nullptr);
  EXPECT_EQ(devices.opened.size(), 2U);
  // Without a drive letter no volume is touched.
  for (const char* path : {"windows\\system32\\config\\system", "cd", "c:", "", "1:\\system"}) {
    EXPECT_EQ(open_hive_source(path, log, devices), nullptr) << path;
  }
  EXPECT_EQ(devices.opened.size(), 2U);
}

TEST_F(live_sources, a_shadow_copy_is_read_from_its_device) {
  const std::string inner = default_hive_path;
  EXPECT_NE(open_shadow_copy_hive(copy_three, place()), nullptr);
  EXPECT_NE(open_shadow_copy_hive(copy_three, place(copy_three + inner)), nullptr);
  EXPECT_EQ(open_shadow_copy_hive(copy_three + "0", place()), nullptr);  // no such number
  devices.devices[copy_three].answers.clear();
  EXPECT_EQ(open_shadow_copy_hive(copy_three, place()), nullptr);
}

}  // namespace
}  // namespace test_support
