// What the elements of filters let pass.
#include "driver/options/file_filter.h"

#include <gtest/gtest.h>

namespace {

using namespace ovrik;

TEST(filter_language, passes_and_refuses_paths) {
  struct {
    const char *filter, *path;
    bool passes;
    const char* reason;
  } const cases[] = {
      {"a|*|b", "any", true, "a star alone stands for the whole list"},
      {"*.hve|system", "x/foo.hve", true, "the end of a name"},
      {"*.hve|system", "x/SYSTEM", true, "a whole name, whatever its case"},
      {"*.hve|system", "x/system.old", false, "more than the whole name"},
      {"*.hve,system", "system", true, "commas separate too"},
      {"system*", "SYSTEM.LOG", true, "the start of a name"},
      {"system*", "oldsystem", false, "the text stands later"},
      {"*ste*", "SYSTEM", true, "any part of a name"},
      {"sy*em", "syem", true, "a star inside is taken out"},
      {"sy*em", "system", false, "and stands for nothing"},
      {"*.exe", "a.exe.exe", false, "only the first occurrence counts"},
      {"\\config", "c/Config/x", true, "the end of the folder's path"},
      {"\\config", "c/configs/x", false, "the hit must end where a folder's name does"},
      {"\\config", "c/config/deep/x", true, "the folder may lie further up"},
      {"\\config", "config", false, "the name of the file is no folder"},
      {"\\system32\\config", "w/System32/config/x", true, "either separator does"},
      {"system:stream", "system", true, "a stream is not compared"},
      {"*:stream", "any", true, "a star in front of a stream takes all"},
      {"", "any", false, "an empty text equals no name"},
      {"a||b", "", false, "an empty path never passes"},
      {"**", "any", true, "two stars hold any part"},
      {"ж*", "Ж", false, "only A to Z have two cases"},
  };
  bool unreadable = true;
  std::vector<file_filter> filters;
  for (const auto& c : cases) {
    parse_filter(filters, c.filter);
    EXPECT_EQ(filter_accepts_path(c.path, filters, unreadable), c.passes)
        << c.filter << " on " << c.path << ": " << c.reason;
    EXPECT_FALSE(unreadable);
  }
  filters.clear();
  append_signature_filter(filters, "xyz");
  EXPECT_TRUE(filters.empty()) << "no byte";
  append_signature_filter(filters, "7265 6");  // up to the first odd digit
  ASSERT_EQ(filters.size(), 1U);
  EXPECT_EQ(filters[0].signature, (std::vector<uint8_t>{0x72, 0x65}));
  EXPECT_FALSE(filter_accepts_path("/nowhere/at/all", filters, unreadable));
  EXPECT_TRUE(unreadable);
}

}  // namespace
