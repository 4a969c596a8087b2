// Numbers in texts and UTF-16 text.

#include <gtest/gtest.h>

#include "base/number_text.h"
#include "base/utf16.h"
#include "support/bytes.h"

namespace {

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
    EXPECT_EQ(ovrik::parse_u64(row.text, u64), row.as_u64 != no) << row.text;
    EXPECT_EQ(ovrik::parse_u32(row.text, u32), row.as_u32 != no) << row.text;
    EXPECT_EQ(u64, row.as_u64) << row.text;
    EXPECT_EQ(u32, row.as_u32) << row.text;
  }
}

TEST(utf16, converts_up_to_the_first_broken_pair) {
  struct row {
    const char* name;
    std::u16string units;
    const char* text;
    bool whole;
  };
  const row rows[] = {
      {"last of each length", {0x7F, 0x7FF, 0xFFFF}, "\x7F\xDF\xBF\xEF\xBF\xBF", true},
      {"first of each length", {0x80, 0x800}, "\xC2\x80\xE0\xA0\x80", true},
      {"lowest pair", {0xD800, 0xDC00}, "\xF0\x90\x80\x80", true},
      {"highest pair", {0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF", true},
      {"high without low", {'A', 0xD83D, 'B'}, "A", false},
      {"high behind high", {'A', 0xD83D, 0xD83D, 0xDE00}, "A", false},
      {"high at the end", {'A', 0xDBFF}, "A", false},
      {"lone low", {0xDC00, '!'}, "\xED\xB0\x80!", true}};
  for (const row& row : rows) {
    test_support::bytes block;
    test_support::append_utf16(block, row.units);
    std::string text = "old";
    EXPECT_EQ(ovrik::utf16_to_utf8(text, ovrik::byte_view(block)), row.whole) << row.name;
    EXPECT_EQ(text, row.text) << row.name;
    test_support::append(block, std::string_view("\0\0AAA", row.whole ? 5 : 0));
    EXPECT_EQ(ovrik::utf16_text(ovrik::byte_view(block)), row.text) << row.name;
    block.assign({0, 'A', 'B', 0, 'C'});  // a NUL byte ends nothing, half a unit is left out
    EXPECT_EQ(ovrik::utf16_text(ovrik::byte_view(block)), "\xE4\x84\x80\x42");
  }
}

}  // namespace
