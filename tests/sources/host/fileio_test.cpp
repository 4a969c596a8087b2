// Files, folders and the stream over a file.
#include "sources/host/fileio.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "output/streams.h"
#include "sources/host/lv_portable_dir.h"
#include "support/bytes.h"
#include "support/temp_dir.h"

namespace {

using namespace test_support;

class fileio : public testing::Test {
 protected:
  fileio() { write_file(dir.path("file"), "1234567"); }

  const temp_dir dir;
  uni::fileio file;
};

TEST_F(fileio, reads_are_clipped_at_the_end) {
  ASSERT_TRUE(file.open_read(dir.path("file")));
  const std::pair<uint64_t, std::string> rows[] = {{0, "123"}, {4, "567"}, {5, "67"},
                                                   {7, ""},    {8, ""},    {UINT64_MAX, ""}};
  for (const auto& [offset, expected] : rows) {
    std::string text(3, '?');
    size_t size = text.size();
    EXPECT_EQ(file.read_at(text.data(), size, offset), !expected.empty()) << offset;
    EXPECT_EQ(text.substr(0, size), expected);
  }
  bytes whole;
  for (const size_t limit : {size_t{6}, size_t{7}, SIZE_MAX}) {
    ASSERT_TRUE(uni::read_whole(whole, dir.path("file"), limit));
    EXPECT_EQ(as_text(whole), std::string("1234567").substr(0, limit));
  }
}

TEST_F(fileio, a_new_file_replaces_nothing_and_grows_by_zeros) {
  ASSERT_EQ(symlink("nowhere", dir.path("link").c_str()), 0);
  for (const char* taken : {"file", "link", ".", ""}) EXPECT_FALSE(file.open_new(dir.path(taken)));
  EXPECT_FALSE(file.extend(10));
  ASSERT_TRUE(file.open_new(dir.path("new")));
  EXPECT_TRUE(file.append("ab", 2) && file.extend(4) && file.append("c", 1) && file.close());
  EXPECT_EQ(as_text(read_file(dir.path("new"))), std::string("ab\0\0c", 5));
  EXPECT_EQ(as_text(read_file(dir.path("file"))), "1234567");
}

TEST_F(fileio, folders_are_made_where_they_are_missing) {
  for (int time = 0; time < 2; ++time) EXPECT_TRUE(lvportdir::make_folders(dir.path("a/b/c/")));
  for (const std::string& taken : {dir.path("file"), dir.path("file/a"), std::string()}) {
    EXPECT_FALSE(lvportdir::make_folders(taken));
  }
}

TEST_F(fileio, a_stream_is_written_when_the_block_is_full_and_at_the_end) {
  constexpr size_t most_held = 0x3FFFF;
  const std::string text(most_held, 'a');
  ASSERT_TRUE(file.open_write(dir.path("out")));
  {
    uni::fileio_output out(file);
    out << text;
    EXPECT_EQ(file.length(), 0U);
    for (const char c : {'b', 'c'}) {
      out << c;
      EXPECT_EQ(file.length(), most_held + 1);
    }
  }
  EXPECT_TRUE(as_text(read_file(dir.path("out"))) == text + "bc");
  uni::fileio closed;
  uni::fileio_output nowhere(closed);
  EXPECT_FALSE(nowhere.good());
  nowhere << text << text << std::flush;
}

TEST_F(fileio, a_stream_hands_whole_rows_on) {
  ASSERT_TRUE(file.open_write(dir.path("out")));
  uni::fileio_output out(file);
  const auto written = [&] { return as_text(read_file(dir.path("out"))); };
  const std::string rows(0x3FFF0, 'r');
  out << rows + "\n"
      << "begun ";
  EXPECT_EQ(written(), "");
  const std::string next = "a long end\n\n";
  out << next;  // the row that has begun does not fit with its end
  EXPECT_TRUE(written() == rows + "\n");
  const std::string many = rows + "\n" + rows + "\n" + rows;
  out << many;
  EXPECT_TRUE(written() == rows + "\nbegun " + next + rows + "\n" + rows + "\n");
  out << "\nlast\n"
      << "cut";
  uni::end_rows();
  EXPECT_TRUE(written() == rows + "\nbegun " + next + many + "\nlast\n");
}

}  // namespace
