#include "sources/shadow_copy.h"

#include <gtest/gtest.h>

namespace {

const std::string prefix = R"(\\?\GLOBALROOT\Device\HarddiskVolumeShadowCopy)";

TEST(shadow_copy, a_number_or_a_pasted_path_names_the_device) {
  for (const std::string& value :
       {std::string("12"), prefix + "12", prefix + "12\\Windows\\x", "\"" + prefix + "12\\"}) {
    EXPECT_EQ(ovrik::shadow_copy_device(value), prefix + "12") << value;
  }
  EXPECT_EQ(ovrik::shadow_copy_device("3\\foo"), prefix + "3\\foo");
}

TEST(shadow_copy, a_path_is_cut_behind_its_device) {
  const std::string identifier = R"(\\.\SnapId_aaaa\)" + std::string(31, 'a');
  for (const std::string& device :
       {prefix + "7", prefix, std::string(R"(\\?\globalroot\device\harddiskvolumeshadowcopy7)"),
        identifier, identifier + "b", std::string()}) {
    EXPECT_EQ(ovrik::without_shadow_copy_device(device + "\\windows"), "\\windows") << device;
  }
  for (const std::string& whole :
       {prefix + "7", prefix, identifier, std::string(R"(\\?\C:\windows)"), std::string()}) {
    EXPECT_EQ(ovrik::without_shadow_copy_device(whole), whole);
  }
}

}  // namespace
