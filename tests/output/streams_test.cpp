#include "output/streams.h"

#include <gtest/gtest.h>

#include "support/bytes.h"
#include "support/temp_dir.h"

namespace {

using namespace test_support;

constexpr size_t put_area_bytes = 0x3FFFF;

TEST(streams, file_is_written_when_the_block_is_full_and_at_the_end) {
  const temp_dir dir;
  const std::string text(put_area_bytes, 'a');
  uni::fileio file;
  ASSERT_TRUE(file.open_write(dir.path("out")));
  {
    uni::fileio_output out(file);
    out << text;
    EXPECT_EQ(file.length(), 0U);
    for (const char c : {'b', 'c'}) {
      out << c;
      EXPECT_EQ(file.length(), put_area_bytes + 1);
    }
  }
  EXPECT_TRUE(as_text(read_file(dir.path("out"))) == text + "bc");
  uni::fileio closed;
  uni::fileio_output nowhere(closed);
  EXPECT_FALSE(nowhere.good());
  nowhere << text << text << std::flush;
}

}  // namespace
