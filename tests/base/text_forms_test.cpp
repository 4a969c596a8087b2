// Numbers in texts, UTF-16 text, and text that is fit to be shown.

#include <gtest/gtest.h>

#include "base/clean_text.h"
#include "base/number_text.h"
#include "base/utf16.h"
#include "base/wide_text.h"
#include "support/bytes.h"

namespace {

using namespace ovrik;

TEST(number_text, reads_option_values) {
  constexpr uint32_t no = 4711;  // refused: the value is kept
  struct row {
    const char* text;
    uint64_t as_u64;
    uint32_t as_u32;
  };
  // A prefix may stand anywhere in a 64-bit number, but only in front of a 32-bit one.
  std::vector<row> rows = {{" +42\t", 42, 42},
                           {"-1", UINT64_MAX, UINT32_MAX},
                           {"4294967295", UINT32_MAX, UINT32_MAX},
                           {"4294967296", 0x100000000, no},
                           {"18446744073709551615", UINT64_MAX, no},
                           {"0xffffffffffffffff", UINT64_MAX, no},
                           {"0X1f", 31, 31},
                           {"x1F", 31, 31},
                           {"at x10", 16, no},
                           {"O17", 15, 15},
                           {"1o17", 15, no},
                           {"'A'", no, 'a'},
                           {"' '", no, ' '}};
  for (const char* bad : {"18446744073709551616", "0x10000000000000000", "o8", "'ab'", "12 3",
                          "12k", "0x1g", "x", "-", ""}) {
    rows.push_back({bad, no, no});
  }
  for (const row& row : rows) {
    uint64_t u64 = no;
    uint32_t u32 = no;
    EXPECT_EQ(parse_u64(row.text, u64), row.as_u64 != no) << row.text;
    EXPECT_EQ(parse_u32(row.text, u32), row.as_u32 != no) << row.text;
    EXPECT_EQ(u64, row.as_u64) << row.text;
    EXPECT_EQ(u32, row.as_u32) << row.text;
  }
}

TEST(utf16, goes_to_utf8_up_to_a_broken_pair_or_whatever_it_is_and_back) {
  struct row {
    std::u16string units;
    std::string text;          ///< up to a high surrogate without a low one
    std::string whole = text;  ///< with all surrogates in the form of other units
  };
  const row rows[] = {
      {u"", ""},
      {u"\u007F\u0080\u07FF\u0800\uFFFF", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
      {u"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {{'A', 0xD83D, 'B'},
       "A",
       "A\xED\xA0\xBD"
       "B"},
      {{'A', 0xD83D, 0xD83D, 0xDE00}, "A", "A\xED\xA0\xBD\xF0\x9F\x98\x80"},
      {{'A', 0xDBFF}, "A", "A\xED\xAF\xBF"},
      {{0xDC00, '!'}, "\xED\xB0\x80!"}};
  for (const row& row : rows) {
    test_support::bytes block;
    test_support::append_utf16(block, row.units);
    std::string text = "old";
    EXPECT_EQ(utf16_to_utf8(text, byte_view(block)), row.text == row.whole);
    EXPECT_EQ(text, row.text);
    test_support::append_utf16(block, std::u16string_view(u"\0AA", 3));
    EXPECT_EQ(utf16_text(byte_view(block)), row.text);
    EXPECT_EQ(narrow(row.units), row.whole);
    EXPECT_EQ(widen(row.whole), row.units);
  }
  // A NUL byte ends nothing, half a unit is left out.
  const uint8_t odd[] = {0, 'A', 'B', 0, 'C'};
  EXPECT_EQ(utf16_text(byte_view(odd, 5)), "\xE4\x84\x80\x42");
  EXPECT_EQ(widen(narrow(std::u16string_view(u"\0x", 2))), std::u16string_view(u"\0x", 2));
}

TEST(wide_text, bytes_that_are_no_utf8_become_replacements) {
  // A lone byte, cut forms, "/" in two and in three bytes, and what lies behind the last character.
  for (const std::string bad : {"\x80", "\xFF\xFE", "\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC0\xAF",
                                "\xE0\x80\xAF", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80"}) {
    const std::u16string replaced(bad.size(), u'\uFFFD');
    EXPECT_EQ(widen("a" + bad), u"a" + replaced) << bad;
    EXPECT_EQ(widen(bad + "("), replaced + u"(") << bad;
  }
}

TEST(clean_text, has_nothing_that_a_terminal_obeys) {
  using namespace std::string_literals;
  const std::pair<std::string, std::string> rows[] = {
      {"", ""},
      {"C:\\a b~", "C:\\a b~"},
      {"App\t1.0\tÄ😀", "App\t1.0\tÄ😀"},
      {"\0\x01\n\r\x1B[2K\x1F\x7F"s, "␀␁␊␍␛[2K␟␡"},
      {"\xC2\x80\xC2\x9B\xC2\x9F\xC2\xA0", "���\xC2\xA0"},
      {"\xE2\x80\xA8\xE2\x80\xAE\xE2\x81\xA6\xE2\x81\xA9\xE2\x80\xAF\xE2\x81\xA5\xE2\x81\xAA",
       "����\xE2\x80\xAF\xE2\x81\xA5\xE2\x81\xAA"},
      {"\xE2\x80\x8E\xE2\x80\x8F\xD8\x9C", "\xE2\x80\x8E\xE2\x80\x8F\xD8\x9C"},  // marks
      {"a\xED\xA0\xBD\xED\xB0\x80z", "a��z"},
      {"\x9B\xC3(", "��("}};
  for (const auto& [text, clean] : rows) {
    EXPECT_EQ(clean_text(text), clean);
    EXPECT_EQ(clean_text(clean), clean);
  }
  EXPECT_EQ(clean_lines("a\n\x1B\n"), "a\n␛\n");
}

TEST(clean_text, is_cut_between_characters) {
  const std::string text = "aÄ😀";
  const size_t sizes[][3] = {{0, 0, 0}, {1, 1, 0}, {2, 1, 0}, {3, 3, 0}, {4, 3, 4},
                             {5, 3, 4}, {6, 3, 6}, {7, 7, 7}, {9, 7, 7}};
  for (const auto& [most, first, last] : sizes) {
    EXPECT_EQ(first_characters(text, most).size(), first) << most;
    EXPECT_EQ(last_characters(text, most).size(), last) << most;
  }
}

}  // namespace
