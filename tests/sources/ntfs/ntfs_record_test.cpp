// The repair of sector ends.
#include "sources/ntfs/ntfs_record.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace test_support {
namespace {

TEST(ntfs_record, sector_ends_go_back_by_the_stride_that_the_count_implies) {
  struct fixup_case {
    const char *name, *mark;
    size_t size;
    uint16_t at, count;
    uint32_t sector;
    bool taken;
    size_t stride, mended;  // of the sector ends, and how many of them are put back
  };
  const fixup_case cases[] = {
      {"two sectors", "FILE", 1024, 48, 3, 512, true, 512, 2},
      {"steps of 512 on large sectors", "FILE", 4096, 48, 9, 4096, true, 512, 8},
      {"a step of 4096", "INDX", 4096, 40, 2, 4096, true, 4096, 1},
      {"a count that divides nothing", "FILE", 1024, 48, 4, 512, true, 512, 2},
      {"nothing to mend", "FILE", 1024, 48, 1, 512, true, 512, 0},
      {"the array where NTFS 3.0 had it", "FILE", 1024, 42, 3, 512, true, 512, 2},
      {"the array close to the first attribute", "FILE", 1024, 50, 3, 512, true, 512, 2},
      {"the array in the first attribute", "FILE", 1024, 52, 3, 512, false, 512, 0},
      {"the array in the header", "FILE", 1024, 40, 3, 512, false, 512, 0},
      {"the array elsewhere in an index block", "INDX", 4096, 400, 9, 512, true, 512, 8},
      {"the array behind the end", "INDX", 4096, 0xFFF0, 9, 512, true, 512, 0},
      {"a count without end", "INDX", 4096, 40, 0xFFFF, 512, true, 512, 8},
      {"damaged, as the system marked it", "BAAD", 1024, 48, 3, 512, false, 512, 0},
      {"sectors of nothing", "FILE", 1024, 48, 4, 0, true, 512, 0},
      {"empty", "", 0, 0, 0, 512, false, 512, 0},
  };
  for (const fixup_case& row : cases) {
    bytes block(row.size, 0xEE);
    if (row.size != 0) {
      put(block, 0, as_bytes(row.mark));
      put_u32(block, 4, uint32_t{row.count} << 16 | row.at);
      put_u16(block, 20, 56);
    }
    bytes expected = block;
    for (uint16_t i = 1; i < 9 && row.at < row.size; ++i) {
      for (bytes* const both : {&block, &expected}) put_u16(*both, row.at + 2U * i, 0xA000U + i);
    }
    for (uint16_t i = 1; i <= row.mended; ++i) put_u16(expected, row.stride * i - 2, 0xA000U + i);
    EXPECT_EQ(ovrik::apply_fixups(block, row.sector), row.taken) << row.name;
    EXPECT_TRUE(block == expected) << row.name;
  }
}

}  // namespace
}  // namespace test_support
