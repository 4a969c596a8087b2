// Volumes and disks for the end-to-end tests, made by programs that were not written here.

#pragma once

#include "e2e/e2e_support.h"

namespace test_support {

inline const std::string hive_path = "Windows/System32/config/SYSTEM";

/// A hive of some 2 MiB in which stretches that can be packed alternate with others that cannot,
/// the shorter ones within one unit of compression.
inline bytes large_hive() {
  hive_builder hive = system_hive_with(seven_cache());
  uint32_t seed = 1;
  for (int i = 0; i < 140; ++i) {
    bytes data(i % 3 == 0 ? 9000 : 15000);
    for (uint8_t& byte : data) {
      if (i % 2 == 0 || i >= 100) seed = seed * 1664525 + 1013904223;
      byte = static_cast<uint8_t>(seed >> 24);
    }
    hive.root.at("Filler").values.push_back({.name = "v" + std::to_string(i), .data = data});
  }
  return hive.bytes();
}

/// Makes NTFS volumes with a hive in them, with programs of others.
class volume_test : public single_source {
 protected:
  void SetUp() override {
    need_tools(OVRIK_BUILD_DIR "/fill_ntfs mkntfs icat ifind sfdisk sgdisk fdisk qemu-img");
    put_file("hive", hive);
    wanted = rows("-hive hive");
  }

  /// Makes a volume and fills it: `commands` are lines for fill_ntfs.
  void make_volume(const std::string& name, const std::string& size, const std::string& options,
                   const std::string& commands) const {
    shell(
        "truncate -s " + size + " " + name + "; mkntfs -F -q " + options + " " + name +
            "; " OVRIK_BUILD_DIR "/fill_ntfs " + name,
        "mkdir\t/Windows\nmkdir\t/Windows/System32\nmkdir\t/Windows/System32/config\n" + commands);
  }

  /// The commands that put bytes of the hive behind what stands in its place.
  static std::string append_hive(size_t offset, size_t length) {
    return "append\t/" + hive_path + "\thive\t" + std::to_string(offset) + "\t" +
           std::to_string(length) + "\n";
  }

  void make_small_volume(const std::string& name, const std::string& options) const {
    make_volume(name, "8M", options, "empty\t/" + hive_path + "\n" + append_hive(0, hive.size()));
  }

  const bytes hive = large_hive();
  std::string wanted;  ///< the rows of the hive
};

}  // namespace test_support
