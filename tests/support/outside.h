// What tests take from outside of the project: tools, and data of real machines.

#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/run_program.h"

namespace test_support {

/// Skips the test if a tool is missing, which must not happen where everything was installed.
inline void need_tools(const std::string& names) {
  if (run_program("which", names).exit_status == 0) return;
  if (std::getenv("CI") != nullptr) FAIL() << "missing, of " << names;
  GTEST_SKIP() << "missing, of " << names;
}

/// Puts a file of a real machine, or one with its whole path, unpacked at `path`. False: it is not
/// there.
inline bool fetch_real(const std::string& name, const std::string& path) {
  const auto file = std::filesystem::path(OVRIK_SOURCE_DIR "/../shared/corpus") / name;
  return std::filesystem::exists(file) &&
         run_program("xzcat", {"-f", file.string()}, {.out_path = path}).exit_status == 0;
}

}  // namespace test_support
