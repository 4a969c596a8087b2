// Carving as a user does it: what is left in the folder of chunks, what is said, and what becomes
// of the chunks.

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <regex>
#include <set>

#include "e2e/e2e_support.h"
#include "support/carving.h"

namespace {

using namespace test_support;
namespace fs = std::filesystem;

class memfile : public single_source {
 protected:
  /// The names in the folder of chunks.
  std::set<std::string> carved() const {
    std::set<std::string> names;
    if (!fs::is_directory(folder.path("out3"))) return names;
    for (const auto& item : fs::directory_iterator(folder.path("out3"))) {
      names.insert(item.path().filename());
    }
    return names;
  }

  /// The rows of a hive as they are of a value that has no key time.
  std::string rows_of_hive(const std::string& name) const {
    const std::string text = body({"-csv", "-hive", name});
    const std::regex key_time("[^,\n]+,[^,\n]+,([^\n]*\n)");
    return std::regex_replace(text.substr(text.find("reg date,")), key_time, "$1");
  }
};

const std::set<std::string> primary_names = {"chunk_0.bin", "stats.txt"};

TEST_F(memfile, a_chunk_of_a_hive_has_the_rows_of_the_hive) {
  const bytes value = cache_of_segments(7, 3);
  hive_builder built = system_hive_with(value);
  put_file("hive", built.bytes());
  const size_t db_at = built.data_at(cache_key_path(1), "AppCompatCache");
  const uint32_t list_at = get_u32(content("hive"), db_at + 8);
  char said[100];
  std::snprintf(said, sizeof said, "Address #0 : offset: 0x%08zx : offset: 0x%08x : num: 0x0003\n",
                db_at, list_at);
  for (int time = 0; time < 2; ++time) {  // the second time over what the first one left
    const run_result result = run({"-memfile", "hive"});
    EXPECT_EQ(said, result.err);
    EXPECT_EQ("", body_of(result.out));
    EXPECT_EQ(0, result.exit_status);
    EXPECT_EQ(primary_names, carved());
    EXPECT_TRUE(padded(value, 3 * size_t{16384}) == content("out3/chunk_0.bin"));
  }
  EXPECT_EQ(rows_of_hive("hive"), body({"-csv", "-binary", "out3/chunk_0.bin"}) + "\n");
  EXPECT_TRUE(as_text(content("out3/stats.txt"))
                  .starts_with("-----------------------------------------------\n"
                               "run:  1 : 00002000[0] 00003000[1] "));
}

TEST_F(memfile, a_chunk_of_a_raw_file_has_the_rows_of_the_value) {
  const bytes value = cache_of_segments(6, 3);
  put_file("value", value);
  put_file("raw", strewn(value));
  const run_result result = run({"-MEMFILE", "raw", "-binary"});  // the last word is no option
  EXPECT_EQ("", result.err);
  EXPECT_EQ(0, result.exit_status);
  EXPECT_EQ((std::set<std::string>{"chunk_0_other.bin", "stats.txt"}), carved());
  EXPECT_EQ(body({"-binary", "value"}), body({"-binary", "out3/chunk_0_other.bin"}));
}

TEST_F(memfile, bad_sources_have_their_words_and_exit_value) {
  bytes moved = system_hive_with(cache_of_segments(7, 3)).bytes();
  put_u32(moved, 0x2004, 0x3000);
  put_file("4095", bytes(4095));
  put_file("zeros", bytes(10000));
  put_file("moved", moved);
  struct {
    const char *source, *err;
    bool folder_made;
  } const rows[] = {
      {"none", "", false},
      {".", "", false},
      {"", "", false},
      {"/dev/zero", "", false},
      {"4095", "", false},
      {"zeros", "none found\n", true},
      {"sets.hiv", "none found\n", true},
      {"moved", "", true},
  };
  for (const auto& row : rows) {
    const run_result result = run({"-memfile", row.source});
    EXPECT_EQ(row.err, result.err) << row.source;
    EXPECT_EQ(failure, result.exit_status) << row.source;
    EXPECT_EQ(row.folder_made, fs::is_directory(folder.path("out3"))) << row.source;
    EXPECT_TRUE(carved().empty()) << row.source;
    fs::remove_all(folder.path("out3"));
  }
}

TEST_F(memfile, files_that_do_not_open_are_passed_over) {
  put_file("raw", strewn(cache_of_segments(7, 3)));
  put_file("out3", as_bytes("in the way"));
  const run_result result = run({"-memfile", "raw"});
  EXPECT_EQ("prob trying to create the folder out3, continuing w/o one\n", result.err);
  EXPECT_EQ(0, result.exit_status);
  EXPECT_EQ("in the way", as_text(content("out3")));
  fs::remove(folder.path("out3"));

  if (is_windows_program()) return;  // Wine takes a link for its file
  put_file("other", as_bytes("of somebody"));
  fs::create_directory(folder.path("out3"));
  fs::create_symlink("../other", folder.path("out3/stats.txt"));
  ASSERT_EQ(0, mkfifo(folder.path("out3/chunk_0_other.bin").c_str(), 0600));
  EXPECT_EQ(0, run({"-memfile", "raw"}).exit_status);
  EXPECT_EQ("of somebody", as_text(content("other")));
  EXPECT_TRUE(fs::is_fifo(folder.path("out3/chunk_0_other.bin")));
}

TEST_F(memfile, evidence_in_the_folder_of_chunks_stays) {
  const bytes hive = system_hive_with(cache_of_segments(7, 3)).bytes();
  fs::create_directory(folder.path("out3"));
  for (const std::string& name :
       {std::string("out3/chunk_0.bin"), std::string("out3/stats.txt"), std::string("hive")}) {
    SCOPED_TRACE(name);
    put_file(name.c_str(), hive);
    fs::create_hard_link(folder.path(name), folder.path("hard"));
    for (const std::string& source : words{name, "hard"}) {
      const run_result result = run({"-memfile", source});
      const bool in_folder = name != "hive";
      EXPECT_EQ(result.exit_status, in_folder ? failure : 0);
      const std::string lost = "prob writing " + host_path(name) + "\n";
      EXPECT_EQ(result.err.find(lost) != std::string::npos, in_folder) << result.err;
      EXPECT_TRUE(hive == content(name.c_str()));
    }
    fs::remove(folder.path(name));
    fs::remove(folder.path("hard"));
  }
  // Another name for the source in the folder is not written through either, nor are results.
  put_file("hive", hive);
  fs::remove(folder.path("out3/chunk_0.bin"));
  fs::create_hard_link(folder.path("hive"), folder.path("out3/chunk_0.bin"));
  put_file("out3/stats.txt", {});
  EXPECT_EQ(failure, run({"-memfile", "hive", "-out", "out3/stats.txt"}).exit_status);
  EXPECT_TRUE(hive == content("hive"));
  EXPECT_TRUE(as_text(content("out3/stats.txt")).starts_with("run time: "));
}

TEST_F(memfile, chunks_of_another_source_do_not_stay) {
  const bytes hive = system_hive_with(cache_of_segments(7, 3)).bytes();
  put_file("hive", hive);
  put_file("raw", strewn(cache_of_segments(7, 3)));
  put_file("zeros", bytes(10000));
  EXPECT_EQ(0, run({"-memfile", "hive"}).exit_status);
  const std::set<std::string> kept = {"chunk_01.bin", "chunk_.bin", "chunk_1.bin.old", "notes.txt",
                                      "chunk_9_other.bin"};
  for (const std::string& name : kept) put_file("out3/" + name, as_bytes("kept"));
  put_file("out3/chunk_9_other.bin", hive);  // no chunk, whatever its name
  put_file("out3/chunk_10.bin", as_bytes("old"));
  fs::create_directory(folder.path("out3/chunk_2.bin"));
  const auto before = carved();
  EXPECT_EQ(failure, run({"-memfile", "zeros"}).exit_status);
  EXPECT_EQ(before, carved());  // this run has nothing in their place

  EXPECT_EQ(0, run({"-memfile", "raw"}).exit_status);
  std::set<std::string> left = kept;
  left.insert({"chunk_0_other.bin", "chunk_2.bin", "stats.txt"});
  EXPECT_EQ(left, carved());
  EXPECT_TRUE(hive == content("out3/chunk_9_other.bin"));

  put_file("out3/chunk_0_other.bin", hive);
  EXPECT_EQ("prob writing " + host_path("out3/chunk_0_other.bin") + "\n",
            run({"-memfile", "raw"}).err);
  EXPECT_TRUE(hive == content("out3/chunk_0_other.bin"));
}

TEST_F(memfile, a_chunk_that_does_not_arrive_is_a_failure) {
  put_file("raw", strewn(cache_of_segments(7, 3)));
  // Files may grow to 8 blocks of 512 bytes.
  const run_result result = run_program(
      "/bin/sh",
      {"-c", "ulimit -f 8; exec \"$0\" \"$@\"", OVRIK_PROGRAM, "-quiet", "-memfile", "raw"},
      {.folder = folder.path()});
  EXPECT_EQ("prob writing out3/stats.txt\nprob writing out3/chunk_0_other.bin\n", result.err);
  EXPECT_EQ(failure, result.exit_status);
}

TEST_F(memfile, progress_is_for_terminals) {
  put_file("raw", strewn(cache_of_segments(7, 3)));
  const std::string command = std::string(OVRIK_PROGRAM) + " -memfile raw";
  const auto shown = [&](const std::string& line) {
    return run_program("/usr/bin/script", {"-qec", line, "/dev/null"}, {.folder = folder.path()})
               .out.find("scanned: 100 %") != std::string::npos;
  };
  EXPECT_TRUE(shown(command));
  EXPECT_FALSE(shown(command + " -quiet"));
  EXPECT_FALSE(shown(command + " 2>err"));
  EXPECT_EQ(std::string::npos, as_text(content("err")).find("scanned"));
}

TEST_F(memfile, what_comes_back_of_a_real_windows_7_hive_is_the_values_own) {
  need_tools("hivexget");
  if (IsSkipped() || HasFatalFailure()) return;
  if (!fetch_real("win7.SYSTEM.xz", folder.path("real"))) GTEST_SKIP() << "no real hives";
  const run_result got = run_program(
      "hivexget", {folder.path("real"), "ControlSet001\\Control\\Session Manager\\AppCompatCache",
                   "AppCompatCache"});
  const bytes value = as_bytes(got.out);
  // Both control sets have the same value. Of its four segments the last tail page of the first
  // and the bin page of the second, 0x25A000 and 0x25B000 in the first hive bins and 0x430000 and
  // 0x431000 in the other ones, hold nothing but the middle and the ends of paths; so do the tail
  // pages of the fourth.
  ASSERT_EQ(56256U, value.size());
  const auto part = [&](size_t begin, size_t length) {
    const auto first = value.begin() + static_cast<std::ptrdiff_t>(begin);
    return bytes(first, first + static_cast<std::ptrdiff_t>(length));
  };
  bytes expected(4 * size_t{16384});
  put(expected, 0, part(0, 4060 + 2 * page_bytes));
  put(expected, 4060 + 3 * page_bytes, part(2 * segment_bytes, segment_bytes + 4060));

  const run_result result = run({"-memfile", "real"});
  EXPECT_EQ(0, result.exit_status);
  EXPECT_EQ((std::set<std::string>{"chunk_0.bin", "chunk_1.bin", "stats.txt"}), carved());
  EXPECT_TRUE(expected == content("out3/chunk_0.bin"));
  EXPECT_TRUE(expected == content("out3/chunk_1.bin"));
  for (const char* said :
       {"Address #3 : offset: 0x00254fe0 : offset: 0x002555e0 : num: 0x0004\n"
        "hbin #2, offset: 0x0025a020 [not available], adjusted 0x0025b000\nAddress #4 : ",
        "Address #5 : offset: 0x0042bfe0 : offset: 0x0042bb40 : num: 0x0004\n"
        "hbin #2, offset: 0x00430020 [not available], adjusted 0x00431000\nAddress #6 : "}) {
    EXPECT_NE(std::string::npos, result.err.find(said)) << said;
  }
}

TEST_F(memfile, a_real_windows_10_hive_has_nothing_to_carve) {
  if (!fetch_real("win10-1709.SYSTEM.xz", folder.path("real"))) GTEST_SKIP() << "no real hives";
  const run_result result = run({"-memfile", "real"});
  EXPECT_EQ("none found\n", result.err);
  EXPECT_EQ(failure, result.exit_status);
}

}  // namespace
