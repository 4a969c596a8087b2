// What the text of a Windows path says, and how text for a Windows console is split.
#include "sources/host/windows_path.h"

#include <gtest/gtest.h>

#include "sources/host/console_pieces.h"

namespace {

using namespace ovrik;
using paths = std::vector<std::string>;

TEST(windows_path, names_at_the_end) {
  struct {
    const char *path, *bare, *without_stream, *written, *last, *folder;
    bool loses_end;
  } const rows[] = {
      {"", "", "", "", "", ".", false},
      {"name", "name", "name", "name", "name", ".", false},
      {"name. .", "name. .", "name. .", "name", "name. .", ".", true},
      {"C:\\a\\b ", "C:\\a\\b ", "C:\\a\\b ", "C:\\a\\b", "b ", "C:\\a\\", true},
      {"C:\\a.\\b", "C:\\a.\\b", "C:\\a.\\b", "C:\\a.\\b", "b", "C:\\a.\\", false},
      {"a/b.", "a/b.", "a/b.", "a/b", "b.", "a/", true},
      {"a\\b/c", "a\\b/c", "a\\b/c", "a\\b/c", "b/c", "a\\b/", false},
      {"a\\/", "a", "a\\/", "a\\/", "/", "a\\/", false},
      {"\\\\", "\\", "\\\\", "\\\\", "", "\\\\", false},
      {".", ".", ".", ".", ".", ".", false},
      {"a\\..", "a\\..", "a\\..", "a\\..", "..", "a\\", false},
      {"a\\. .", "a\\. .", "a\\. .", "a\\. .", ". .", "a\\", true},
      {"...", "...", "...", "...", "...", ".", true},
      {"\\\\?\\C:\\a.", "\\\\?\\C:\\a.", "\\\\?\\C:\\a.", "\\\\?\\C:\\a.", "a.", "\\\\?\\C:\\",
       true},
      {"a:b", "a:b", "a:b", "a:b", "a:b", ".", false},
      {"ab:c:$DATA", "ab:c:$DATA", "ab", "ab:c:$DATA", "ab:c:$DATA", ".", false},
      {"C:ab:c", "C:ab:c", "C:ab", "C:ab:c", "C:ab:c", ".", false},
      {"C:\\a:b\\c:d", "C:\\a:b\\c:d", "C:\\a:b\\c", "C:\\a:b\\c:d", "c:d", "C:\\a:b\\", false},
      {"\\\\.\\C:", "\\\\.\\C:", "\\\\.\\C:", "\\\\.\\C:", "C:", "\\\\.\\", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(windows_path::without_trailing_separators(row.path), row.bare);
    EXPECT_EQ(windows_path::without_stream_name(row.path), row.without_stream);
    EXPECT_EQ(windows_path::as_written(row.path), row.written);
    EXPECT_EQ(windows_path::last_component(row.path), row.last);
    EXPECT_EQ(windows_path::folder_of(row.path), row.folder);
    EXPECT_EQ(windows_path::loses_its_end(row.path), row.loses_end);
  }
}

TEST(windows_path, pipes_and_streams) {
  for (const char* pipe : {"\\\\.\\pipe\\a", "//?/PIPE/a", "\\\\server\\Pipe\\a\\b"}) {
    EXPECT_TRUE(windows_path::is_pipe(pipe)) << pipe;
  }
  for (const char* other :
       {"", "\\\\", "\\\\.\\pipe", "C:\\pipe\\a", "\\\\server\\share\\pipe\\a"}) {
    EXPECT_FALSE(windows_path::is_pipe(other)) << other;
  }
  EXPECT_EQ(windows_path::stream_suffix("::$DATA"), "");
  EXPECT_EQ(windows_path::stream_suffix(":a b:$DATA"), ":a b");
  EXPECT_EQ(windows_path::stream_suffix(":a:$OTHER"), ":a:$OTHER");
}

TEST(windows_path, names_that_lead_away_from_this_computer) {
  for (const char* other :
       {"\\\\host\\share\\a", "//host/share/a", "\\/host/a", "\\\\?\\UNC\\host\\share",
        "\\\\.\\UNC\\host", "//?/unc/host/a", "\\??\\UNC\\host\\a",
        "\\\\?\\GLOBALROOT\\Device\\Mup\\host", "\\\\.\\pipe\\a"}) {
    EXPECT_TRUE(windows_path::names_other_host(other)) << other;
  }
  for (const char* here : {"", "a", "\\a\\b", "C:\\a", "C:\\\\host\\a", "..\\a", "a//b",
                           "\\\\?\\C:\\a", "//./d:/a", "\\??\\C:\\a"}) {
    EXPECT_FALSE(windows_path::names_other_host(here)) << here;
  }
}

TEST(windows_path, folders_from_the_top_down) {
  const std::pair<std::string, paths> rows[] = {
      {"a", {"a"}},
      {"", {""}},
      {"a/b\\c\\", {"a", "a\\b", "a\\b\\c"}},
      {"\\a\\b", {"\\a", "\\a\\b"}},
      {"C:\\a", {"C:", "C:\\a"}},
      {"\\\\?\\C:\\a", {"\\\\?\\C:", "\\\\?\\C:\\a"}},
      {"\\\\server\\a", {"\\\\server", "\\\\server\\a"}},
  };
  for (const auto& [path, folders] : rows) {
    EXPECT_EQ(windows_path::folders_down_to(path), folders) << path;
  }
}

TEST(windows_path, the_long_form_is_put_on_once_and_keeps_the_end) {
  const auto below_here = [](const std::string& path) {
    return path.starts_with('\\') ? path : path == "." ? "D:\\here" : "D:\\here\\" + path;
  };
  const std::pair<std::string, std::string> rows[] = {
      {"C:\\a", "\\\\?\\C:\\a"},
      {"c:/a/..", "\\\\?\\c:\\a\\.."},
      {"C:a", "\\\\?\\D:\\here\\C:a"},
      {"a/b", "\\\\?\\D:\\here\\a\\b"},
      {"a.", "\\\\?\\D:\\here\\a."},
      {"a\\b ", "\\\\?\\D:\\here\\a\\b "},
      {"\\\\server\\share\\a.", "\\\\?\\UNC\\server\\share\\a."},
      {"\\\\?\\C:\\a", "\\\\?\\C:\\a"},
      {"\\\\.\\C:", "\\\\.\\C:"},
  };
  for (const auto& [path, form] : rows) {
    EXPECT_EQ(windows_path::long_form(path, below_here), form) << path;
  }
}

TEST(windows_path, the_long_prefix_is_taken_from_plain_paths) {
  const std::string g(60, 'g'), share = "\\\\?\\unc\\server\\a";
  const std::string device = "\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy3";
  const std::pair<std::string, std::string> rows[] = {
      {"\\\\?\\C:\\x", "C:\\x"},        {"\\\\?\\", "\\\\?\\"}, {share, share},
      {"C:\\" + g, "C:\\" + g},         {device, device},       {"\\\\?\\C:\\" + g, "C:\\" + g},
      {"\\\\?\\global\\a", "global\\a"}};
  for (const auto& [path, plain] : rows) {
    EXPECT_EQ(windows_path::strip_long_prefix(path), plain) << path;
  }
}

TEST(console_piece, ends_between_characters) {
  constexpr size_t most = uni::largest_console_piece;
  struct {
    std::string character;
    size_t at;  ///< where it begins
    size_t piece;
  } const rows[] = {
      {"a", most - 1, most},
      {"a", most, most},
      {"\xD0\x96", most - 2, most},
      {"\xD0\x96", most - 1, most - 1},
      {"\xE5\x90\x8D", most - 2, most - 2},
      {"\xF0\x9F\x98\x80", most - 3, most - 3},
      {"\xF0\x9F\x98\x80", most - 4, most},
      {"\x80\x80\x80\x80\x80\x80", most - 4, most - 4},
  };
  for (const auto& [character, at, piece] : rows) {
    std::string text = std::string(at, ' ') + character + "more";
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    EXPECT_EQ(uni::console_piece({bytes, text.size()}), piece) << at - most;
    EXPECT_EQ(uni::console_piece({bytes, most}), most);
  }
  EXPECT_EQ(uni::console_piece({}), 0U);
}

}  // namespace
