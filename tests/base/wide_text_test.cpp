#include "base/wide_text.h"

#include <gtest/gtest.h>

namespace {

TEST(wide_text, goes_to_utf8_and_back_whatever_it_is) {
  const std::pair<std::u16string, std::string> texts[] = {
      {u"", ""},
      {u"C:\\a.exe", "C:\\a.exe"},
      {std::u16string(1, u'\0') + u"x", std::string(1, '\0') + "x"},
      {u"\u007F\u0080\u07FF\u0800\uFFFF", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
      {u"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      // Surrogates without the other half, in front, within and at the end.
      {{0xDC00, u'a', 0xD800, u'b', 0xD83D, 0xD83D, 0xDE00, 0xD800},
       "\xED\xB0\x80"
       "a\xED\xA0\x80"
       "b\xED\xA0\xBD\xF0\x9F\x98\x80\xED\xA0\x80"},
  };
  for (const auto& [wide, utf8] : texts) {
    EXPECT_EQ(ovrik::narrow(wide), utf8);
    EXPECT_EQ(ovrik::widen(utf8), wide);
  }
}

TEST(wide_text, bytes_that_are_no_utf8_become_replacements) {
  const std::pair<std::string, std::u16string> texts[] = {
      {"a\x80", u"a\uFFFD"},
      {"\xFF\xFE", u"\uFFFD\uFFFD"},
      {"\xC3", u"\uFFFD"},
      {"\xC3(", u"\uFFFD("},
      {"\xE2\x82", u"\uFFFD\uFFFD"},
      {"\xF0\x9F\x98", u"\uFFFD\uFFFD\uFFFD"},
      {"\xC0\xAF", u"\uFFFD\uFFFD"},  // "/" in two bytes
      {"\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xF8\x88\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
  };
  for (const auto& [utf8, wide] : texts) EXPECT_EQ(ovrik::widen(utf8), wide) << utf8;
}

}  // namespace
