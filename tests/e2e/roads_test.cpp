// From the evidence to the results: hives and raw values, good and bad, and where results go.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <regex>

#include "e2e/e2e_support.h"

namespace {

using namespace test_support;
namespace fs = std::filesystem;

class roads : public single_source {
 protected:
  /// The same bytes as a value of a hive and as a file must give the same rows.
  void expect_roads_agree(const bytes& cache, size_t rows) {
    put_file("raw", cache);
    put_file("hive", system_hive_with(cache).bytes());
    const std::string raw = body({"-csv", "-binary", "raw"});
    EXPECT_EQ(rows + 1, static_cast<size_t>(std::count(raw.begin(), raw.end(), '\n')));
    const std::string hive = body({"-csv", "-hive", "hive"});
    const std::regex key_time("[^,\n]+,[^,\n]+,([^\n]*\n)");
    const size_t header = std::min(hive.find("reg date,"), hive.size());
    EXPECT_EQ(raw + "\n", std::regex_replace(hive.substr(header), key_time, "$1"));
  }

  /// A device goes by a link of the test's own: a faulty program must not remove the real one.
  void link_device(const std::string& name) const {
    fs::create_symlink("/dev/" + name, folder.path(name));
  }

  /// Puts a file of real data into the folder as "real". False: it is not there.
  bool fetch(const std::string& name) const {
    const fs::path path = fs::path(OVRIK_SOURCE_DIR) / "../shared/corpus" / name;
    if (!fs::exists(path)) return false;
    const run_options options{.out_path = folder.path("real")};
    if (path.extension() == ".xz") {
      return run_program("xz", {"-dc", path}, options).exit_status == 0;
    }
    write_file(options.out_path, read_file(path));
    return true;
  }
};

size_t body_rows(std::string_view out) {
  size_t count = 0;
  for (size_t at = 0; (at = out.find("\n0|entry# ", at)) != out.npos; ++at) ++count;
  return count;
}

TEST_F(roads, every_layout_reads_alike_from_hive_and_file) {
  for (const int layout : {1, 2, 3, 4, 5, 6, 7, 9, 10, 12, 13, 14}) {
    SCOPED_TRACE(layout);
    cache_builder cache(layout);
    cache.entry(u"C:\\a.exe", filetime(2020, 2, 29)).entry(u"D:\\b, c.exe", 0);
    expect_roads_agree(cache.bytes(), 2);
  }
}

TEST_F(roads, bad_evidence_has_its_words_and_exit_value) {
  bytes bare_header(200);
  put_u32(bare_header, 0, 52);
  const bytes hive = two_cache_hive(2);
  hive_builder other("OTHER"), unnamed(""), valueless;
  other.root = unnamed.root = system_hive_with(xp_cache()).root;
  valueless.root = system_hive_with(xp_cache()).root;
  valueless.root.at(cache_key_path(1)).values.clear();
  put_file("empty", {});
  put_file("text", as_bytes(std::string(9000, 'x')));
  put_file("4496", bytes(hive.begin(), hive.begin() + 4496));
  put_file("4497", bytes(hive.begin(), hive.begin() + 4497));
  put_file("other", other.bytes());
  put_file("unnamed", unnamed.bytes());
  put_file("valueless", valueless.bytes());
  put_file("bare", bare_header);
  put_file("bare_hive", system_hive_with(bare_header).bytes());
  const std::string opening = wiped + "Problem opening ", parsing = wiped + "probs parsing from ";
  const std::string refused = "prob calling parse_shim_cache, aborting\n";
  struct {
    const char *option, *file;
    std::string err, body = {};
    int exit_status = failure;
  } const rows[] = {
      {"-hive", "none", opening + "none\n"},
      {"-hive", ".", opening + ".\n"},
      {"-hive", "/dev/zero", opening + "/dev/zero\n"},
      {"-hive", "empty", opening + "empty\n"},
      {"-hive", "text", opening + "text\n"},
      {"-hive", "4496", opening + "4496\n"},
      {"-hive", "4497", parsing + "4497\n"},
      {"-hive", "other", ""},
      {"-hive", "valueless", parsing + "valueless\n"},
      {"-extract", "valueless", parsing + "valueless\n"},
      {"-hive", "bare_hive", "", "", 0},
      {"-binary", "none", ""},
      {"-binary", ".", ""},
      {"-binary", "empty", ""},
      {"-binary", "text", "", refused},
      {"-binary", "bare", "", refused},
  };
  for (const auto& row : rows) {
    const run_result result = run({row.option, row.file});
    EXPECT_EQ(row.err, result.err) << row.option << row.file;
    EXPECT_EQ(row.body, body_of(result.out)) << row.option << row.file;
    EXPECT_EQ(row.exit_status, result.exit_status) << row.option << row.file;
  }
  EXPECT_EQ(2, body_rows(body({"-hive", "unnamed", "-bodyfile"})));
  EXPECT_EQ(failure, run({"-extract", "valueless", "-out", "header"}).exit_status);
  EXPECT_EQ("", body_of(as_text(content("header"))));
}

TEST_F(roads, an_unreadable_file_is_a_file_that_does_not_open) {
  if (is_windows_program()) GTEST_SKIP() << "Wine has one user";
  put_file("closed", content("sets.hiv"));
  chmod(folder.path("closed").c_str(), 0);
  std::vector<std::string> command = {ovrik_command().back(), "-quiet", "-hive", "closed"};
  if (geteuid() == 0) {
    // The superuser reads every file; somebody else runs a copy that all may run.
    std::filesystem::copy_file(command[0], folder.path("ovrik"));
    chmod(folder.path("ovrik").c_str(), 0755);
    chmod(folder.path().c_str(), 0755);
    command[0] = folder.path("ovrik");
    command.insert(command.begin(), {"/usr/bin/setpriv", "--reuid=65534", "--clear-groups"});
  }
  const run_result result =
      run_program(command.front(), {command.begin() + 1, command.end()}, {.folder = folder.path()});
  EXPECT_EQ(failure, result.exit_status);
  EXPECT_EQ(wiped + "Problem opening closed\n", result.err);
}

TEST_F(roads, a_cut_hive_never_gains_rows) {
  cache_builder cache(14);
  for (int i = 0; i < 300; ++i) cache.entry(u"C:\\Windows\\System32\\some program.exe", 1);
  const bytes hive = system_hive_with(cache.bytes()).bytes();
  size_t rows_before = 0;
  for (size_t size = 0; size <= hive.size(); size += 4096) {
    put_file("cut", bytes(hive.begin(), hive.begin() + static_cast<std::ptrdiff_t>(size)));
    const run_result result = run({"-hive", "cut", "-bodyfile"});
    ASSERT_TRUE(result.exit_status == 0 || result.exit_status == failure) << size << result.err;
    ASSERT_EQ(result.exit_status == failure,
              result.err.starts_with(wiped + "Prob") || result.err.starts_with(wiped + "prob"))
        << size;
    ASSERT_GE(body_rows(result.out), rows_before) << size;
    rows_before = body_rows(result.out);
  }
  EXPECT_EQ(300, rows_before);
}

TEST_F(roads, a_raw_file_counts_up_to_16_mib) {
  cache_entry first{.path = u"C:\\a.exe"};
  first.data.resize(0x1000000 - cache_builder(14).entry(first).bytes().size());
  const cache_entry second{.path = u"C:\\b.exe", .data = bytes(4 << 20)};
  put_file("full", cache_builder(14).entry(first).entry(second).bytes());
  EXPECT_EQ(1, body_rows(body({"-binary", "full", "-bodyfile"})));
  first.data.push_back(0);
  put_file("over", cache_builder(14).entry(first).entry(second).bytes());
  const run_result none = run({"-binary", "over", "-bodyfile"});
  EXPECT_EQ("", body_of(none.out) + none.err);
  EXPECT_EQ(failure, none.exit_status);
}

TEST_F(roads, extract_lists_entries_or_writes_the_value) {
  const std::string rule = std::string(44, '-') + "\n";
  EXPECT_EQ(rule + "Header information\n\n" + rule + "entry: 0   \n\n" + rule + "entry: 1   \n\n" +
                rule + "entry: 2   \n\n\n",
            body({"-extract", "sets.hiv"}));
  const run_result result = run({"-extract", "sets.hiv", "-out", "value"});
  EXPECT_EQ("", result.out + result.err);
  EXPECT_EQ(seven_cache(), content("value"));
  run({"-extract", "sets.hiv", "-out", "value", "-all_controlsets"});
  EXPECT_EQ(xp_cache(), content("value"));
}

TEST_F(roads, results_go_where_they_are_sent) {
  const std::string rows = body({"-hive", "sets.hiv"});
  put_file("old", bytes(100000));
  const run_result result = run({"-hive", "sets.hiv", "-append", "-out", "old"});
  EXPECT_EQ("", result.out + result.err);
  EXPECT_EQ(rows, body_of(as_text(content("old"))));
  EXPECT_EQ("prob calling parse_shim_cache, aborting\n",
            run({"-binary", "sets.hiv", "-out", "old"}).out);
  EXPECT_EQ("", run({"-out", "-hive", "sets.hiv"}).out);
  EXPECT_EQ("", body_of(as_text(content("-hive"))));
}

TEST_F(roads, results_go_to_devices_and_pipes) {
  if (is_windows_program()) {
    EXPECT_EQ(0, run({"-hive", "sets.hiv", "-out", "NUL"}).exit_status);
    EXPECT_FALSE(fs::exists(folder.path("NUL")));
    return;
  }
  const std::string rows = body({"-hive", "sets.hiv"});
  link_device("stdout");
  EXPECT_EQ(rows, body({"-hive", "sets.hiv", "-out", "stdout"}));
  link_device("null");
  EXPECT_EQ(0, run({"-hive", "sets.hiv", "-out", "null"}).exit_status);

  ASSERT_EQ(0, mkfifo(folder.path("fifo").c_str(), 0600));
  const int fifo = open(folder.path("fifo").c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(0, run({"-hive", "sets.hiv", "-out", "fifo"}).exit_status);
  std::string received(0x10000, '\0');
  received.resize(static_cast<size_t>(std::max<ssize_t>(0, read(fifo, &received[0], 0x10000))));
  close(fifo);
  EXPECT_EQ(rows, body_of(received));
  EXPECT_TRUE(fs::is_fifo(folder.path("fifo")));
  EXPECT_TRUE(fs::is_symlink(folder.path("null")) && fs::is_symlink(folder.path("stdout")));
}

TEST_F(roads, results_that_do_not_arrive_are_a_failure) {
  link_device("full");
  struct {
    words arguments;
    const char *standard_output, *problem;
  } const rows[] = {
      {{"-hive", "sets.hiv"}, "/dev/full", "standard output\n"},
      {{"-sqlite", "x"}, "/dev/full", "standard output\n"},
      {{"-hive", "sets.hiv", "-out", "full"}, "", "full\n"},
      {{"-extract", "sets.hiv", "-out", "full"}, "", "full\n"},
  };
  for (const auto& row : rows) {
    const run_result full = run(row.arguments, {.out_path = row.standard_output});
    EXPECT_TRUE(full.err.ends_with(std::string("prob writing results file: ") + row.problem));
    EXPECT_EQ(failure, full.exit_status) << testing::PrintToString(row.arguments);
  }
}

TEST_F(roads, evidence_is_never_written_to) {
  const bytes evidence = two_cache_hive(2);
  const fs::path hive = folder.path("sets.hiv");
  fs::create_symlink("sets.hiv", folder.path("soft"));
  fs::create_hard_link(hive, folder.path("hard"));
  const auto modified = fs::last_write_time(hive);
  for (const words& source : {words{"-hive", "sets.hiv"},
                              {"-extract", "sets.hiv/"},
                              {"-Binary", "sets.hiv"},
                              {"-memfile", "sets.hiv"},
                              {"-hive", "-csv", "sets.hiv"},
                              {"-hive", "-base10", "sets.hiv"},
                              {"-hive", "x", "-hive", "sets.hiv"}}) {
    for (const char* output : {"-out", "-outfile", "-diags"}) {
      for (const std::string name : {"sets.hiv", "soft", "hard"}) {
        words arguments = source;
        arguments.insert(arguments.end(), {output, name});
        const run_result result = run(arguments);
        ASSERT_TRUE(evidence == content("sets.hiv")) << testing::PrintToString(arguments);
        EXPECT_EQ("prob opening file " + name + " for output, aborting\n", result.err);
        EXPECT_EQ("", body_of(result.out));
        EXPECT_EQ(failure, result.exit_status);
      }
    }
  }
  run({"-hive", "sets.hiv", "-all_controlsets", "-inc_slack", "-out", "new"});
  run({"-extract", "sets.hiv", "-diags", "diags", "-profile"});
  EXPECT_EQ(evidence, content("sets.hiv"));
  EXPECT_EQ(modified, fs::last_write_time(hive));
}

TEST_F(roads, the_sample_has_thirteen_programs) {
  const std::string sample = OVRIK_SOURCE_DIR "/samples/SYSTEM";
  EXPECT_EQ(13, body_rows(body({"-hive", sample, "-bodyfile"})));
  EXPECT_EQ(17, body_rows(body({"-hive", sample, "-bodyfile", "-all_controlsets"})));
}

TEST_F(roads, real_values_read_alike_from_hive_and_file) {
  const std::pair<const char*, size_t> values[] = {
      {"WinXPx86.bin", 17}, {"win7x64.bin", 304}, {"Win81.bin", 1024}};
  for (const auto& [name, rows] : values) {
    if (!fetch(name)) GTEST_SKIP() << name << " is not there";
    SCOPED_TRACE(name);
    expect_roads_agree(content("real"), rows);
  }
}

TEST_F(roads, real_hives_have_their_rows) {
  struct {
    const char* name;
    size_t current, all;
    int exit_status;
  } const hives[] = {{"win7.SYSTEM.xz", 330, 660, 0},
                     {"win10-1709.SYSTEM.xz", 1024, 1024, 0},
                     {"SAM.xz", 0, 0, failure}};
  for (const auto& hive : hives) {
    if (!fetch(hive.name)) GTEST_SKIP() << hive.name << " is not there";
    const run_result all = run({"-hive", "real", "-bodyfile", "-all_controlsets"});
    EXPECT_EQ(hive.all, body_rows(all.out)) << hive.name;
    EXPECT_EQ("", all.err) << hive.name;
    EXPECT_EQ(hive.exit_status, all.exit_status) << hive.name;
    EXPECT_EQ(hive.current, body_rows(body({"-hive", "real", "-bodyfile"}))) << hive.name;
  }
}

}  // namespace
