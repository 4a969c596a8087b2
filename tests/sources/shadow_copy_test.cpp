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
  const std::string identifier = R"(\\.\snapid_)" + std::string(36, 'a');
  const std::pair<std::string, std::string> paths[] = {
      {prefix + "7\\windows", "\\windows"},
      {R"(\\?\globalroot\device\harddiskvolumeshadowcopy7\Windows\a)", "\\Windows\\a"},
      {prefix + "7", prefix + "7"},
      {prefix, prefix},
      {prefix + "\\windows", "\\windows"},
      {identifier + "\\windows", "\\windows"},
      {R"(\\.\SNAPID_)" + std::string(36, 'a') + "b\\windows", "\\windows"},
      {R"(\\.\snapid_aaaa\)" + std::string(31, 'a') + "\\windows", "\\windows"},
      {identifier, identifier},
      {R"(\\?\C:\windows)", R"(\\?\C:\windows)"},
      {"\\windows", "\\windows"},
      {"", ""},
  };
  for (const auto& [path, cut] : paths) {
    EXPECT_EQ(ovrik::without_shadow_copy_device(path), cut) << path;
  }
}

}  // namespace
