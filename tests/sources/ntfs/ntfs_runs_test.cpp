// Run lists, sound and damaged.
#include "sources/ntfs/ntfs_runs.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace test_support {
namespace {

TEST(ntfs_runs, run_lists_are_decoded_up_to_what_does_not_fit) {
  const std::pair<bytes, std::string> cases[] = {
      // vcn:lcn+count, "hole" in place of the lcn
      {{0x21, 2, 0, 1, 0x11, 3, 0xF0, 0x11, 1, 0x20, 0}, "7:256+2 9:240+3 12:272+1 "},
      {{0x11, 1, 9, 0x21, 1, 0xFF, 0xFF, 0}, "7:9+1 8:8+1 "},
      // Cluster 0 is one only in the first run; without an offset not even there.
      {{0x11, 4, 0, 0x11, 2, 5, 0x11, 2, 0, 0x01, 3, 0}, "7:0+4 11:5+2 13:hole+2 15:hole+3 "},
      {{0x01, 4, 0x11, 1, 6}, "7:hole+4 11:6+1 "},
      {{0x11, 1, 6, 0x21, 1, 6}, "7:6+1 "},
      {{0xFF, 1, 6}, ""},
      // Behind and in front of every volume.
      {{0x11, 1, 6, 0x81, 1, 0, 0, 0, 0, 0, 0, 0, 0x7F, 0}, "7:6+1 "},
      {{0x11, 1, 6, 0x11, 1, 0x80, 0}, "7:6+1 "},
      // No more than four; a run of no clusters is none.
      {{0x11, 1, 9, 0x11, 0, 1, 0x11, 1, 1, 0x11, 1, 2, 0x11, 1, 3, 0x11, 1, 4},
       "7:9+1 8:11+1 9:13+1 10:16+1 "},
      {{}, ""},
  };
  for (const auto& [runs, expected] : cases) {
    ovrik::cluster_extents extents;
    decode_run_list(extents, ovrik::byte_view(runs), 7, 4);
    std::string text;
    for (const ovrik::cluster_extent& e : extents) {
      text += std::to_string(e.vcn) + ":" + (e.sparse ? "hole" : std::to_string(e.lcn)) + "+" +
              std::to_string(e.clusters) + " ";
    }
    EXPECT_EQ(text, expected) << testing::PrintToString(runs);
  }
}

}  // namespace
}  // namespace test_support
