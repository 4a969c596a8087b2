// Every output form on one small hive, whole: output_forms.txt shows what has to come out.

#include "e2e/e2e_support.h"

namespace {

using namespace test_support;

class output_forms : public single_source {};

TEST_F(output_forms, are_the_same_everywhere) {
  put_file("keys.hiv", two_cache_hive(1));
  const std::string all = as_text(read_file(OVRIK_SOURCE_DIR "/tests/e2e/output_forms.txt"));
  const std::string prompt = "$ ovrik ";
  const words forms = behind(prompt, all);
  EXPECT_EQ(12U, forms.size());
  for (const std::string& arguments : forms) {
    const std::string line = prompt + arguments + "\n";
    const size_t results = all.find(line) + line.size();
    const std::string expected = all.substr(results, all.find(prompt, results) - results);
    for (const std::string language : {"C", "tr_TR.UTF-8"}) {
      expect({{arguments, "", expected, 0}}, {.environment = "TZ=Pacific/Apia LC_ALL=" + language});
    }
  }
}

}  // namespace
