// Names and places of files that a host makes hard: other alphabets, long paths, files that may
// not be written.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "e2e/e2e_support.h"

namespace test_support {
namespace {

namespace fs = std::filesystem;

class host_files : public single_source {
 protected:
  /// The same results, with the hive and everything that the run writes in `place`, a folder in
  /// the folder of the test with a separator at its end.
  void expect_the_same_in(const std::string& place) {
    const fs::path hive = folder.path(place + "sets.hiv");
    fs::create_directories(hive.parent_path());
    fs::copy_file(folder.path("sets.hiv"), hive);
    const std::string rows = body({"-hive", "sets.hiv"});
    for (const std::string& name : {place, folder.path(place)}) {
      SCOPED_TRACE(name);
      EXPECT_EQ(rows, body({"-hive", name + "sets.hiv"}));
      const run_result result = run({"-hive", name + "sets.hiv", "-out", name + "results", "-diags",
                                     name + "diags", "-profile"});
      EXPECT_EQ(0, result.exit_status) << result.err;
      EXPECT_EQ(rows, body_of(as_text(content((place + "results").c_str()))));
      EXPECT_NE(as_text(content((place + "diags").c_str())).find(name + "sets.hiv"),
                std::string::npos);
      EXPECT_EQ(1U, locations({"-pipe"}, name + "sets.hiv\n").size());
      EXPECT_EQ(names{host_path(name + "sets.hiv")},
                locations({"-enumdir", host_path(name), "-filter", "*.hiv"}, ""));
    }
  }

  using names = std::vector<std::string>;

  names locations(const words& arguments, const std::string& list) const {
    const std::string label = "Hive Location: ";
    const std::string out = run(arguments, {.input = list}).out;
    names found;
    for (size_t at = 0; (at = out.find(label, at)) != std::string::npos;) {
      at += label.size();
      found.push_back(out.substr(at, out.find('\n', at) - at));
    }
    return found;
  }
};

TEST_F(host_files, names_of_every_alphabet) {
  expect_the_same_in("Jürgen Ж 名前 😀/");
  const run_options options = {.environment = {{"OVRIK_ЖÜ", "sets"}}};
  EXPECT_EQ(body({"-hive", "sets.hiv"}), body_of(run({"-hive", "%OVRIK_ЖÜ%.hiv"}, options).out));
  const std::string header = run({"-hostname", "Ж😀"}).out;
  EXPECT_NE(header.find(" -hostname Ж😀 "), std::string::npos) << header;
}

TEST_F(host_files, paths_of_more_than_260_characters) {
  std::string place;
  while (place.size() < 700) place += std::string(90, 'p') + "/";
  expect_the_same_in(place);
}

TEST_F(host_files, a_read_only_results_file_is_replaced) {
  if (!is_windows_program() && geteuid() != 0) GTEST_SKIP() << "only the superuser may do that";
  const std::string rows = body({"-hive", "sets.hiv"});
  for (const words& more : {words{}, {"-append"}}) {
    put_file("results", as_bytes(std::string(100000, 'x')));
    chmod(folder.path("results").c_str(), 0444);
    words arguments = {"-hive", "sets.hiv", "-out", "results"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(0, run(arguments).exit_status);
    EXPECT_EQ(rows, body_of(as_text(content("results"))));
  }
}

TEST_F(host_files, standard_error_may_be_anything) {
  const std::string rows = body({"-hive", "sets.hiv"});
  std::vector<std::string> command = ovrik_command();
  for (const char* target : {"2>&-", "2>messages", "2>&1 >results"}) {
    std::string line = "exec";
    for (const std::string& word : command) line += " '" + word + "'";
    line += std::string(" -hive none -quiet ") + target;
    const run_result failed = run_program("/bin/sh", {"-c", line}, {.folder = folder.path()});
    EXPECT_EQ(failure, failed.exit_status) << target;
  }
  EXPECT_EQ(wiped + "Problem opening none\n", as_text(content("messages")));
}

}  // namespace
}  // namespace test_support
