// Names and places of files that a host makes hard: other alphabets, long paths, files that may
// not be written.
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
  void expect_the_same_in(const std::string& place) const {
    fs::create_directories(folder.path(place));
    fs::copy_file(folder.path("sets.hiv"), folder.path(place + "sets.hiv"));
    const std::string label = "Hive Location: ";
    for (const std::string& name : {place, folder.path(place)}) {
      SCOPED_TRACE(name);
      const std::string hive = name + "sets.hiv";
      EXPECT_EQ(rows, body({"-hive", hive}));
      const run_result result =
          run({"-hive", hive, "-out", name + "results", "-diags", name + "diags", "-profile"});
      EXPECT_EQ(0, result.exit_status) << result.err;
      EXPECT_EQ(rows, body_of(text(place + "results")));
      EXPECT_NE(text(place + "diags").find(hive), std::string::npos);
      EXPECT_EQ(1U, behind(label, run("-pipe", {.input = hive + "\n"}).out).size());
      EXPECT_EQ(words{host_path(hive)},
                behind(label, run({"-enumdir", host_path(name), "-filter", "*.hiv"}).out));
    }
  }

  const std::string rows = body("-hive sets.hiv");
};

TEST_F(host_files, names_of_every_alphabet) {
  expect_the_same_in("Jürgen Ж 名前 😀/");
  EXPECT_EQ(rows, body_of(run("-hive %OVRIK_ЖÜ%.hiv", {.environment = "OVRIK_ЖÜ=sets"}).out));
  const std::string header = run("-hostname Ж😀").out;
  EXPECT_NE(header.find(" -hostname Ж😀 "), std::string::npos) << header;
}

TEST_F(host_files, paths_of_more_than_260_characters) {
  std::string place;
  while (place.size() < 700) place += std::string(90, 'p') + "/";
  expect_the_same_in(place);
}

TEST_F(host_files, a_read_only_results_file_is_replaced) {
  const bool may_replace = is_windows_program() || geteuid() == 0;
  for (const std::string more : {"", " -append"}) {
    put_file("results", bytes(100000));
    chmod(folder.path("results").c_str(), 0444);
    const run_result result = run("-hive sets.hiv -out results" + more);
    EXPECT_EQ(may_replace ? 0 : failure, result.exit_status);
    EXPECT_EQ(may_replace, rows == body_of(text("results")));
  }
}

TEST_F(host_files, standard_error_may_be_anything) {
  for (const std::string target : {"2>&-", "2>messages", "2>&1 >results"}) {
    EXPECT_EQ(failure, run("-hive none " + target).exit_status) << target;
  }
  EXPECT_EQ(wiped + "Problem opening none\n", text("messages"));
}

}  // namespace
}  // namespace test_support
