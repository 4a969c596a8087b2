// Environment variables in paths.
#include "driver/options/path_variables.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace ovrik;

const std::string copy_prefix = R"(\\?\GLOBALROOT\Device\HarddiskVolumeShadowCopy)";

TEST(path_variables, are_replaced_as_often_as_they_have_a_value) {
  setenv("SHIM_CASE", "c7", 1);
  setenv("SHIM_NESTED", "/mnt/%SHIM_CASE%", 1);
  setenv("SHIM_SELF", "%SHIM_SELF%+", 1);
  unsetenv("SHIM_NONE");
  unsetenv("Vss");
  const std::string in_limit(501, 'x');
  const std::pair<std::string, std::string> paths[] = {
      {"%SHIM_CASE%%SHIM_CASE%", "c7c7"},
      {"%SHIM_NESTED%/x", "/mnt/c7/x"},
      {"%SHIM_NONE%/%SHIM_CASE%", "%SHIM_NONE%/c7"},
      {"%SHIM_NONE%SHIM_CASE%", "%SHIM_NONE%SHIM_CASE%"},  // the second sign closes the first name
      {"%Vss%3\\a", copy_prefix + "3\\a"},
      {"100%", "100%"},
      {"%%SHIM_CASE%", "%%SHIM_CASE%"},
      {"%SHIM_SELF%", "%SHIM_SELF%" + std::string(64, '+')},
      {in_limit + "%SHIM_CASE%", in_limit + "c7"},
      {in_limit + "x%SHIM_CASE%", in_limit + "x%SHIM_CASE%"}};
  for (const auto& [path, expanded] : paths) EXPECT_EQ(expanded, expand_path_variables(path));
}

}  // namespace
