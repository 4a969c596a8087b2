// What is said about virtual disks whose files bear forged names.
#include "driver/vmdk_words.h"

#include <gtest/gtest.h>

namespace ovrik {
namespace {

TEST(vmdk_words, suggested_lists_run_nothing_when_they_are_pasted) {
  const std::pair<std::vector<std::string>, std::string> rows[] = {
      {{"b.vmdk", "a dir/it's.vmdk"}, "-vmdk \"b.vmdk | a dir/it's.vmdk\""},
      {{"C:\\a\\b.vmdk"}, "-vmdk \"C:\\a\\b.vmdk\""},
      {{"$(id)'.vmdk", "b"}, "-vmdk '$(id)'\\''.vmdk | b'"},
      {{"b", "`id`,1"}, "-vmdk \"b\" -vmdk '`id`,1'"},
      {{"a\";id;\""}, "-vmdk \"\" -vmdk 'a\";id;\"'"},
      {{"a\\\\b"}, "-vmdk 'a\\\\b'"},
      {{"a\\"}, "-vmdk 'a\\'"},
      {{"a\n\x1B"}, "-vmdk \"a\u240A\u241B\""}};
  for (const auto& [files, text] : rows) {
    vmdk_chain chain;
    chain.files = files;
    EXPECT_EQ(vmdk_option_text(chain, "-vmdk"), text);
  }
}

TEST(vmdk_words, lines_are_the_programs_own) {
  vmdk_chain chain;
  chain.fault = vmdk_fault::not_opened;
  chain.faulty_file = "a\nb";
  chain.found_parents = {{"c\x1B[2J", "d\r\n=> e"}};
  EXPECT_EQ(vmdk_words(chain),
            "=> vmdk file: c\u241B[2J\n depends on parent vmdk d\u240D\u240A=> e\n"
            "a\u240A"
            "b can't be opened\n");
}

}  // namespace
}  // namespace ovrik
