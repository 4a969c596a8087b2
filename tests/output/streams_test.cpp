#include "output/streams.h"

#include <gtest/gtest.h>

#include <filesystem>

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
    out << 'b';
    EXPECT_EQ(file.length(), put_area_bytes + 1);
    out << 'c';
    EXPECT_EQ(file.length(), put_area_bytes + 1);
  }
  EXPECT_TRUE(as_text(read_file(dir.path("out"))) == text + "bc");
}

TEST(streams, full_disk_and_closed_file_are_a_failed_state) {
  ASSERT_TRUE(std::filesystem::is_character_file("/dev/full"));  // a plain file would grow
  uni::fileio full, closed;
  ASSERT_TRUE(full.open_append("/dev/full"));
  uni::fileio_output out(full), nowhere(closed);
  out << std::string(put_area_bytes, 'a');
  EXPECT_TRUE(out.good());
  out << 'b';
  EXPECT_TRUE(out.bad());
  EXPECT_FALSE(nowhere.good());
  nowhere << std::string(put_area_bytes + 2, 'a') << std::flush;
}

}  // namespace
