// What the command line makes the program do: help, the start-up header, options, refusals.

#include <gtest/gtest.h>

#include <regex>

#include "e2e/e2e_support.h"

namespace {

using namespace test_support;

class command_line : public single_source {
 protected:
  /// The results for the hive with these options, which must be fit to give some.
  std::string rows(words arguments, const std::string& messages = "") const {
    arguments.insert(arguments.end(), {"-hive", "sets.hiv"});
    const run_result result = run(arguments);
    EXPECT_EQ(messages, result.err);
    EXPECT_EQ(0, result.exit_status) << testing::PrintToString(arguments);
    return body_of(result.out);
  }
};

TEST_F(command_line, help_goes_to_standard_error) {
  const std::regex top(".+\n.+\n-{77}\n\n.+\n\nUsage:\n \n  ovrik -livesys  +=.+\n");
  for (const words& arguments : {words{}, {"-H"}, {"-hive", "x", "/?"}, {"--help", "-csv"}}) {
    const run_result help = run_ovrik(arguments);
    const size_t second = std::min(help.err.find("  ovrik -hive"), help.err.size());
    EXPECT_TRUE(std::regex_match(help.err.substr(0, second), top)) << help.err;
    EXPECT_NE(std::string::npos, help.err.find("  ovrik -vmdk \"file1 | file2 | ..\"     = use V"));
    EXPECT_TRUE(help.err.ends_with(" = process all ControlSets vice default\n\n")) << help.err;
    EXPECT_EQ("", help.out);
    EXPECT_EQ(0, help.exit_status);
  }
}

TEST_F(command_line, header_tells_time_host_and_arguments) {
  const std::string facts = ".*;[^:;]+:[^;]+;[^:;]+:[^\n]+\n";
  const std::string line = "\"[^:\"]+: .*ovrik(\\.exe)? 'a b' -hive";
  const std::regex plain("[^:;]+: ?\\d\\d/\\d\\d/\\d{4}" + facts + line + "\"\n\n");
  const std::regex dated("[^:;]+: ?\\d{4}-\\d\\d-\\d\\d" + facts + line +
                         " -dateformat yyyy-mm-dd\"\n\n");
  const std::string out = run_ovrik({"a b", "-hive"}).out;
  EXPECT_TRUE(std::regex_match(out, plain)) << out;
  const std::string other = run_ovrik({"a b", "-hive", "-dateformat", "yyyy-mm-dd"}).out;
  EXPECT_TRUE(std::regex_match(other, dated)) << other;
}

TEST_F(command_line, different_words_give_the_same_rows) {
  struct {
    words one, other;
  } const pairs[] = {
      {{"-CSV"}, {"-csv"}},
      {{"-csv", "-bodyfile"}, {"-bodyfile"}},
      {{"-bodyfile", "-csv"}, {"-bodyfile"}},
      {{"-multiline", "-csvl2t"}, {"-multiline"}},
      {{"-multiline", "-bodyfile"}, {"-multiline"}},
      {{"-base10", "-base16"}, {}},
      {{"-base16", "-base10"}, {}},
      {{"-csv_separator", "tab"}, {"-csv_separator", "\t"}},
      {{"-csv_separator", "\\t"}, {"-csv_separator", "Tab"}},
      {{"-dateformat", "YYYY-MM-DD", "-timeformat", "hh:mm:ss.xxx"}, {}},
      {{"-extra_meta", "-sort_by_index", "-csvl2t"}, {"-csvl2t"}},
      {{"-gzip", "-zlib", "-split_pathfile", "-separate_files", "-verbose", "-v", "-unknown"}, {}},
      {{"-filter", "-hive", "-filter_path", "-hive", "-filter", "-hive"}, {}},
      {{"-filter_skip", "-hive", "-filter_path", "-hive"}, {}},
      {{"-aliaspath", "-hive", "-alias", "-hive|x"}, {}},
  };
  for (const auto& pair : pairs) EXPECT_EQ(rows(pair.other), rows(pair.one)) << pair.one[0];
  for (const char* option :
       {"-threads", "-zlibex", "-signal", "-username", "-cpuinst", "-cpu", "-fragment_files",
        "-outdir", "-num_subdirs", "-filter_sig", "-offset", "-diags"}) {
    EXPECT_EQ(rows({}), rows({option, "-hive"})) << option;  // each takes the name for its value
  }
}

TEST_F(command_line, goes_on_after_a_bad_value) {
  struct {
    words arguments;
    const char* message;
  } const bad_values[] = {
      {{"-dateformat", "yyyy"}, "invalid yyyy, using default format\n"},
      {{"-timeformat", "hhmmssxx"}, "invalid hhmmssxx, using default format\n"},
      {{"-timeformat", "hh:mm:ss.x"}, "invalid hh:mm:ss.x, using default format\n"},
      {{"-cmd_start_time", "2020-13-01"}, "invalid start time, ignoring\n"},
      {{"-cmd_stop_time", "-hive"}, "invalid stop time, ignoring\n"},
      {{"-offset", "bad", "-cpu", "bad", "-num_subdirs", ""}, ""},
  };
  for (const auto& bad : bad_values) EXPECT_EQ(rows({}), rows(bad.arguments, bad.message));
}

TEST_F(command_line, ends_with_its_words_and_exit_value) {
  put_file("xp.bin", xp_cache());
  const std::string offered = "This option is not offered in this build\n";
  const std::string refused = "prob calling parse_shim_cache, aborting\n";
  struct {
    words arguments;
    std::string body, err;
    int exit_status = failure;
  } const rows[] = {
      {{"-hive", "sets.hiv", "-sqlite", "x"}, "", offered},
      {{"-hive", "sets.hiv", "-sqlite_log", "x"}, "", offered},
      {{"-alias", "a|b|c"}, "", "imbalanced alias to true pathfiles, aborting\n"},
      {{"-aliaspath", "a|b|c"}, "", "imbalanced alias to true pathfiles, aborting\n"},
      {{"-out", "no/x"}, "", "prob opening file " + host_path("no/x") + " for output, aborting\n"},
      {{"-outfile", "."}, "", "prob opening file . for output, aborting\n"},
      {{"-hive", "sets.hiv", "-cmd_start_time", "20200101"}, "", ""},
      {{"-hive", "sets.hiv", "-cmd_stop_time", ""}, "", ""},
      {{"-unknown"}, "", "", 0},
      {{"-hive"}, "", "", 0},
      {{"-hive", "-csv"}, "", "", 0},
      {{"-extract", "%SETS%.hiv"}, "", wiped + "Problem opening %SETS%.hiv\n"},
      {{"-binary", "%SETS%.hiv"}, "", ""},
      {{"x", "-hive", "%SETS%.hiv"}, body({"-hive", "sets.hiv"}), "", 0},
      // Of several sources one alone is taken, and -binary reads the path that was read last.
      {{"-binary", "sets.hiv", "-hive", "xp.bin"}, body({"-binary", "xp.bin"}), "", 0},
      {{"-hive", "sets.hiv", "-binary", "xp.bin"}, refused, ""},
      {{"-hive", "xp.bin", "-extract", "sets.hiv", "-binary", ""}, refused, ""},
      {{"-binary", ""}, "", ""},
  };
  for (const auto& row : rows) {
    const std::string name = testing::PrintToString(row.arguments);
    const run_result result = run(row.arguments, {.environment = {{"SETS", "sets"}}});
    EXPECT_EQ(row.body, body_of(result.out)) << name;
    EXPECT_EQ(row.err, result.err) << name;
    EXPECT_EQ(row.exit_status, result.exit_status) << name;
  }
}

TEST_F(command_line, diagnostics_profile_and_progress) {
  const std::string hive = folder.path("sets.hiv"), diagnostics = folder.path("my diags");
  const std::string step = "\x1b[2K\r    \r";
  EXPECT_EQ(step + "analyzing: WinXP Shim Cache\r" + step + "analyzing: Shim Cache\r" + step +
                "\r" + wiped,
            run_ovrik({"-hive", hive}).err);
  const std::string err = run({"-hive", "sets.hiv", "-profile", "-diags", diagnostics}).err;
  EXPECT_TRUE(std::regex_match(err, std::regex("->[0-9.e-]+ secs\n"))) << err;
  const std::string told = as_text(content("my diags"));
  EXPECT_TRUE(std::regex_match(told, std::regex("->.*ovrik(\\.exe)? -hive sets.hiv -profile -diags "
                                                "\"[^\"]+my diags\" -quiet\n"
                                                "(.*\n)*->[0-9.e-]+ secs\n?")))
      << told;
  EXPECT_EQ(0, run({"-diags", "no/diags"}).exit_status);
}

}  // namespace
