// The names of shadow copies.
#include "sources/disk/shadow_copy.h"

#include <gtest/gtest.h>

namespace {

using namespace ovrik;

const std::string copy_prefix = R"(\\?\GLOBALROOT\Device\HarddiskVolumeShadowCopy)";

TEST(shadow_copy, a_number_or_a_pasted_path_names_the_device) {
  for (const std::string& value : {std::string("12"), copy_prefix + "12",
                                   copy_prefix + "12\\Windows\\x", "\"" + copy_prefix + "12\\"}) {
    EXPECT_EQ(shadow_copy_device(value), copy_prefix + "12") << value;
  }
  EXPECT_EQ(shadow_copy_device("3\\foo"), copy_prefix + "3\\foo");
}

TEST(shadow_copy, a_path_is_cut_behind_its_device) {
  const std::string identifier = R"(\\.\SnapId_aaaa\)" + std::string(31, 'a');
  for (const std::string& device :
       {copy_prefix + "7", copy_prefix,
        std::string(R"(\\?\globalroot\device\harddiskvolumeshadowcopy7)"), identifier,
        identifier + "b", std::string()}) {
    EXPECT_EQ(without_shadow_copy_device(device + "\\windows"), "\\windows") << device;
  }
  for (const std::string& whole : {copy_prefix + "7", copy_prefix, identifier,
                                   std::string(R"(\\?\C:\windows)"), std::string()}) {
    EXPECT_EQ(without_shadow_copy_device(whole), whole);
  }
}

}  // namespace
