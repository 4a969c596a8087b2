// Volumes and disks for the end-to-end tests, made by programs that were not written here.

#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "e2e/e2e_support.h"

namespace test_support {

namespace fs = std::filesystem;

#define SKIP_OR_FAIL(why)                            \
  do {                                               \
    if (std::getenv("CI") != nullptr) FAIL() << why; \
    GTEST_SKIP() << why;                             \
  } while (false)

constexpr uint64_t mebi = 1 << 20;
inline const std::string hive_path = "Windows/System32/config/SYSTEM";

/// Numbers without a pattern, different for each seed.
inline bytes noise(size_t size, uint32_t seed) {
  bytes block(size);
  for (uint8_t& byte : block) {
    seed = seed * 1664525 + 1013904223;
    byte = static_cast<uint8_t>(seed >> 24);
  }
  return block;
}

/// A hive of some 2 MiB in which stretches that can be packed alternate with others that cannot,
/// the shorter ones within one unit of compression.
inline bytes large_hive() {
  hive_builder hive = system_hive_with(seven_cache());
  for (uint32_t i = 0; i < 100; ++i) {
    const size_t size = i % 3 == 0 ? 9000 : 15000;
    const bytes data = i % 2 == 0 ? noise(size, i) : bytes(size, static_cast<uint8_t>(i));
    hive.root.at("Filler").values.push_back({.name = "v" + std::to_string(i), .data = data});
  }
  for (uint32_t i = 0; i < 40; ++i) {
    hive.root.at("Large").values.push_back(
        {.name = "v" + std::to_string(i), .data = noise(16000, 1000 + i)});
  }
  return hive.bytes();
}

inline void copy_into(const std::string& disk, uint64_t offset, const bytes& content) {
  std::fstream file(disk, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(static_cast<std::streamoff>(offset));
  file.write(reinterpret_cast<const char*>(content.data()),
             static_cast<std::streamsize>(content.size()));
}

inline void make_empty(const std::string& path, uint64_t size) {
  write_file(path, "");
  fs::resize_file(path, size);
}

/// Makes NTFS volumes with a hive in them, with programs of others.
class volume_test : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* tool : {"mkntfs", OVRIK_BUILD_DIR "/fill_ntfs", "icat", "ifind", "mmls",
                             "sfdisk", "sgdisk", "fdisk", "qemu-img"}) {
      if (run_program("/usr/bin/which", {tool}).exit_status != 0) {
        SKIP_OR_FAIL(tool << " is missing");
      }
    }
    write_file(folder.path("hive"), hive);
  }

  /// Makes a volume and fills it: `commands` are lines for fill_ntfs, run in the test's folder.
  void make_volume(const char* name, uint64_t size, words options,
                   const std::string& commands) const {
    make_empty(folder.path(name), size);
    options.insert(options.begin(), {"-F", "-q"});
    options.push_back(folder.path(name));
    EXPECT_EQ(run_program("mkntfs", options).exit_status, 0) << name;
    const std::string folders =
        "mkdir\t/Windows\nmkdir\t/Windows/System32\nmkdir\t/Windows/System32/config\n";
    const run_result filled = run_program(OVRIK_BUILD_DIR "/fill_ntfs", {name},
                                          {.input = folders + commands, .folder = folder.path()});
    EXPECT_EQ(filled.exit_status, 0) << name << filled.err;
  }

  /// The commands that put bytes of the hive behind what stands in its place.
  static std::string append_hive(size_t offset, size_t length) {
    return "append\t/" + hive_path + "\thive\t" + std::to_string(offset) + "\t" +
           std::to_string(length) + "\n";
  }

  void make_small_volume(const char* name, words options = {"-c", "4096"}) const {
    make_volume(name, 8 * mebi, std::move(options),
                "empty\t/" + hive_path + "\n" + append_hive(0, hive.size()));
  }

  run_result run(const words& arguments) const {
    return run_ovrik(arguments, {.folder = folder.path()});
  }

  /// What stands behind the lines that name the source.
  std::string rows(const words& arguments) const {
    const std::string out = run(arguments).out;
    const size_t at = out.find("\nreg date");
    return at == std::string::npos ? "no rows: " + out : out.substr(at);
  }

  const temp_dir folder;
  const bytes hive = large_hive();
};

}  // namespace test_support
