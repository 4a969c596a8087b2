// What the command line makes the program do: help, the start-up header, options, refusals.

#include <regex>

#include "e2e/e2e_support.h"

namespace {

using namespace test_support;

void expect_match(const std::string& text, const std::string& pattern) {
  EXPECT_TRUE(std::regex_match(text, std::regex(pattern))) << text << "\nis no " << pattern;
}

class command_line : public single_source {};

TEST_F(command_line, help_goes_to_standard_error) {
  for (const char* arguments : {"", "-H", "-hive x '/?'", "--help -csv"}) {
    const run_result help = run_ovrik(arguments);
    const size_t second = std::min(help.err.find("  ovrik -hive"), help.err.size());
    expect_match(help.err.substr(0, second),
                 ".+\n.+\n-{77}\n\n.+\n\nUsage:\n \n  ovrik -livesys  +=.+\n");
    EXPECT_NE(std::string::npos, help.err.find("  ovrik -vmdk \"file1 | file2 | ..\"     = use V"));
    EXPECT_TRUE(help.err.ends_with(" = process all ControlSets vice default\n\n")) << help.err;
    EXPECT_EQ("", help.out);
    EXPECT_EQ(0, help.exit_status);
  }
}

TEST_F(command_line, header_tells_time_host_and_arguments) {
  const std::string facts = ".*;[^:;]+:[^;]+;[^:;]+:[^\n]+\n";
  const std::string line = "\"[^:\"]+: .*ovrik(\\.exe)? 'a b' -hive";
  expect_match(run_ovrik("'a b' -hive").out,
               "[^:;]+: ?\\d\\d/\\d\\d/\\d{4}" + facts + line + "\"\n\n");
  expect_match(run_ovrik("'a b' -hive -dateformat yyyy-mm-dd").out,
               "[^:;]+: ?\\d{4}-\\d\\d-\\d\\d" + facts + line + " -dateformat yyyy-mm-dd\"\n\n");
}

TEST_F(command_line, different_words_give_the_same_rows) {
  const std::pair<const char*, const char*> pairs[] = {
      {"-CSV", "-csv"},
      {"-csv -bodyfile", "-bodyfile"},
      {"-bodyfile -csv", "-bodyfile"},
      {"-multiline -csvl2t", "-multiline"},
      {"-multiline -bodyfile", "-multiline"},
      {"-base10 -base16", ""},
      {"-base16 -base10", ""},
      {"-csv_separator tab", "-csv_separator '\t'"},
      {"-csv_separator '\\t'", "-csv_separator Tab"},
      {"-dateformat YYYY-MM-DD -timeformat hh:mm:ss.xxx", ""},
      {"-extra_meta -sort_by_index -csvl2t", "-csvl2t"},
      {"-gzip -zlib -split_pathfile -separate_files -verbose -v -unknown", ""},
      {"-filter -hive -filter_path -hive -filter -hive", ""},
      {"-filter_skip -hive -filter_path -hive", ""},
      {"-aliaspath -hive -alias '-hive|x'", ""},
      // Each of these takes the name behind it for its value.
      {"-threads -hive -zlibex -hive -signal -hive -username -hive -cpuinst -hive -cpu -hive "
       "-fragment_files -hive -outdir -hive -num_subdirs -hive -filter_sig -hive -offset -hive "
       "-diags -hive",
       ""},
  };
  const std::string hive = " -hive sets.hiv";
  for (const auto& [one, other] : pairs) expect({{one + hive, "", body(other + hive), 0}});
}

TEST_F(command_line, ends_with_its_words_and_exit_value) {
  put_file("xp.bin", xp_cache());
  const std::string offered = "This option is not offered in this build\n";
  const std::string imbalanced = "imbalanced alias to true pathfiles, aborting\n";
  const std::string refused = "prob calling parse_shim_cache, aborting\n";
  const std::string rows = body("-hive sets.hiv"), ignored = ", using default format\n";
  expect(
      {
          {"-dateformat yyyy -hive sets.hiv", "invalid yyyy" + ignored, rows, 0},
          {"-timeformat hhmmssxx -hive sets.hiv", "invalid hhmmssxx" + ignored, rows, 0},
          {"-timeformat hh:mm:ss.x -hive sets.hiv", "invalid hh:mm:ss.x" + ignored, rows, 0},
          {"-cmd_start_time 2020-13-01 -hive sets.hiv", "invalid start time, ignoring\n", rows, 0},
          {"-cmd_stop_time -hive -hive sets.hiv", "invalid stop time, ignoring\n", rows, 0},
          {"-offset bad -cpu bad -num_subdirs '' -hive sets.hiv", "", rows, 0},
          {"-hive sets.hiv -sqlite x", offered},
          {"-hive sets.hiv -sqlite_log x", offered},
          {"-alias 'a|b|c'", imbalanced},
          {"-aliaspath 'a|b|c'", imbalanced},
          {"-out no/x", "prob opening file " + host_path("no/x") + " for output, aborting\n"},
          {"-outfile .", "prob opening file . for output, aborting\n"},
          {"-hive sets.hiv -cmd_start_time 20200101", ""},
          {"-hive sets.hiv -cmd_stop_time ''", ""},
          {"-unknown", "", "", 0},
          {"-hive", "", "", 0},
          {"-hive -csv", "", "", 0},
          {"-extract %SETS%.hiv", wiped + "Problem opening %SETS%.hiv\n"},
          {"-binary %SETS%.hiv", ""},
          {"x -hive %SETS%.hiv", "", rows, 0},
          // Of several sources one alone is taken, and -binary reads the path that was read last.
          {"-binary sets.hiv -hive xp.bin", "", body("-binary xp.bin"), 0},
          {"-hive sets.hiv -binary xp.bin", "", refused},
          {"-hive xp.bin -extract sets.hiv -binary ''", "", refused},
          {"-binary ''", ""},
          {"-diags no/diags", "", "", 0},
      },
      {.environment = "SETS=sets"});
  if (is_windows_program()) return;
  expect({{"-livesys", "this host has no running Windows to read\n"},
          {"-vss 3",
           "shadow copies are reached through a running Windows, which this host has not\n"}});
}

TEST_F(command_line, diagnostics_profile_and_progress) {
  const std::string step = "\x1b[2K\r    \r";
  EXPECT_EQ(step + "analyzing: WinXP Shim Cache\r" + step + "analyzing: Shim Cache\r" + step +
                "\r" + wiped,
            run_ovrik("-hive sets.hiv", {.folder = folder.path()}).err);
  expect_match(run("-hive sets.hiv -profile -diags 'my diags'").err, "->[0-9.e-]+ secs\n");
  expect_match(text("my diags"),
               "->.*ovrik(\\.exe)? -hive sets.hiv -profile -diags \"my diags\" -quiet\n"
               "(.*\n)*->[0-9.e-]+ secs\n?");
}

}  // namespace
