// From the evidence to the results: hives and raw values, good and bad, and where results go.

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

const std::string nothing = body_of("");  // not even a header

class roads : public single_source {
 protected:
  /// The same bytes as a value of a hive and as a file must give the same rows.
  void expect_roads_agree(const bytes& cache, size_t rows) const {
    put_file("raw", cache);
    put_file("hive", system_hive_with(cache).bytes());
    const std::string raw = body("-csv -binary raw"), hive = body("-csv -hive hive");
    EXPECT_EQ(rows + 1, static_cast<size_t>(std::count(raw.begin(), raw.end(), '\n')));
    const std::regex key_time("[^,\n]+,[^,\n]+,([^\n]*\n)");
    const size_t header = std::min(hive.find("reg date,"), hive.size());
    EXPECT_EQ(raw + "\n", std::regex_replace(hive.substr(header), key_time, "$1"));
  }

  static size_t rows_in(const std::string& out) { return behind("\n0|entry# ", out).size(); }
  size_t body_rows(const std::string& arguments) const {
    return rows_in(run("-bodyfile " + arguments).out);
  }
};

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
  hive_builder other("OTHER"), unnamed(""), valueless;
  other.root = unnamed.root = valueless.root = system_hive_with(xp_cache()).root;
  valueless.root.at(cache_key_path(1)).values.clear();
  shell("touch empty; head -c 4496 sets.hiv >4496; head -c 4497 sets.hiv >4497");
  put_file("text", bytes(9000, 'x'));
  put_file("other", other.bytes());
  put_file("unnamed", unnamed.bytes());
  put_file("valueless", valueless.bytes());
  put_file("bare", bare_header);
  put_file("bare_hive", system_hive_with(bare_header).bytes());
  const std::string opening = wiped + "Problem opening ", parsing = wiped + "probs parsing from ";
  const std::string refused = "prob calling parse_shim_cache, aborting\n";
  expect({
      {"-hive none", opening + "none\n"},
      {"-hive .", opening + ".\n"},
      {"-hive /dev/zero", opening + "/dev/zero\n"},
      {"-hive empty", opening + "empty\n"},
      {"-hive text", opening + "text\n"},
      {"-hive 4496", opening + "4496\n"},
      {"-hive 4497", parsing + "4497\n"},
      {"-hive other", ""},
      {"-hive valueless", parsing + "valueless\n"},
      {"-extract valueless", parsing + "valueless\n"},
      {"-extract valueless -out header", parsing + "valueless\n", nothing},
      {"-hive bare_hive", "", "", 0},
      {"-binary none", ""},
      {"-binary .", ""},
      {"-binary empty", ""},
      {"-binary text", "", refused},
      {"-binary bare", "", refused},
  });
  EXPECT_EQ("", body_of(text("header")));
  EXPECT_EQ(2, body_rows("-hive unnamed"));
}

TEST_F(roads, an_unreadable_file_or_folder_does_not_open) {
  // The superuser reads everything; somebody else runs a copy that all may run.
  const std::string user = geteuid() == 0 ? "setpriv --reuid=65534 --clear-groups " : "";
  shell(
      "mkdir -p tree/locked; cp sets.hiv tree/SYSTEM; cp sets.hiv tree/locked/SYSTEM;"
      "chmod 0 sets.hiv tree/locked; chmod 755 .; cp " +
      program_path() + " ovrik");
  const std::string started = user + "./ovrik 2>&1 >results -quiet ";
  EXPECT_EQ(wiped + "Problem opening sets.hiv\n",
            shell(started + "-hive sets.hiv && exit 1 || test $? = 255"));
  EXPECT_EQ("analyzing: tree/SYSTEM\n", shell(started + "-enumdir tree -num_subdirs 2"));
  shell("chmod 755 tree/locked");
}

TEST_F(roads, a_cut_hive_never_gains_rows) {
  cache_builder cache(14);
  for (int i = 0; i < 300; ++i) cache.entry(u"C:\\Windows\\System32\\some program.exe", 1);
  const bytes hive = system_hive_with(cache.bytes()).bytes();
  size_t rows_before = 0;
  for (size_t size = 0; size <= hive.size(); size += 4096) {
    put_file("cut", bytes(hive.begin(), hive.begin() + static_cast<std::ptrdiff_t>(size)));
    const run_result result = run("-hive cut -bodyfile");
    ASSERT_EQ(result.err.empty() ? 0 : failure, result.exit_status) << size << result.err;
    ASSERT_GE(rows_in(result.out), rows_before) << size;
    rows_before = rows_in(result.out);
  }
  EXPECT_EQ(300, rows_before);
}

TEST_F(roads, a_raw_file_counts_up_to_16_mib) {
  cache_entry first{.path = u"C:\\a.exe"};
  first.data.resize(0x1000000 - cache_builder(14).entry(first).bytes().size());
  const cache_entry second{.path = u"C:\\b.exe", .data = bytes(4 << 20)};
  put_file("full", cache_builder(14).entry(first).entry(second).bytes());
  EXPECT_EQ(1, body_rows("-binary full"));
  first.data.push_back(0);
  put_file("over", cache_builder(14).entry(first).entry(second).bytes());
  expect({{"-binary over -bodyfile", ""}});
}

TEST_F(roads, extract_lists_entries_or_writes_the_value) {
  const std::string rule = std::string(44, '-') + "\n";
  expect({
      {"-extract sets.hiv", "",
       rule + "Header information\n\n" + rule + "entry: 0   \n\n" + rule + "entry: 1   \n\n" +
           rule + "entry: 2   \n\n\n",
       0},
      {"-extract sets.hiv -out current", "", nothing, 0},
      {"-extract sets.hiv -out last -all_controlsets", "", nothing, 0},
  });
  EXPECT_EQ(seven_cache(), content("current"));
  EXPECT_EQ(xp_cache(), content("last"));
}

TEST_F(roads, results_go_where_they_are_sent) {
  const std::string rows = body("-hive sets.hiv"), problem = "prob writing results file: ";
  put_file("old", bytes(100000));
  // A device goes by a link of the test's own: a faulty program must not remove the real one.
  shell("ln -s /dev/stdout /dev/null /dev/full .; mkfifo fifo");
  expect({
      {"-hive sets.hiv -append -out old -outfile no/x", "", nothing, 0},
      {"-out -hive sets.hiv", "", nothing, 0},
      {"-hive sets.hiv -out full", problem + "full\n", nothing},
      {"-extract sets.hiv -out full", problem + "full\n", nothing},
      {"-hive sets.hiv >/dev/full", problem + "standard output\n", nothing},
      {"-sqlite x >/dev/full",
       "This option is not offered in this build\n" + problem + "standard output\n", nothing},
  });
  EXPECT_EQ(rows, body_of(text("old")));
  EXPECT_EQ("", body_of(text("-hive")));
  EXPECT_EQ("prob calling parse_shim_cache, aborting\n", run("-binary sets.hiv -out old").out);
  if (is_windows_program()) {
    expect({{"-hive sets.hiv -out NUL", "", nothing, 0}});
    EXPECT_FALSE(fs::exists(folder.path("NUL")));
    return;
  }
  expect({{"-hive sets.hiv -out null", "", nothing, 0}});
  const std::string sent = start_of_program() + " -hive sets.hiv -quiet -out ";
  EXPECT_EQ(rows, body_of(shell("cat fifo & " + sent + "fifo; wait")));
  EXPECT_EQ(rows, body_of(shell(sent + "stdout | cat")));
  shell("test -p fifo -a -L null -a -L full -a -L stdout");
}

TEST_F(roads, evidence_is_never_written_to) {
  const bytes evidence = content("sets.hiv");
  const std::string before = state_of("sets.hiv");
  shell("ln -s sets.hiv soft; ln sets.hiv hard");
  for (const std::string source :
       {"-hive sets.hiv", "-extract sets.hiv/", "-Binary sets.hiv", "-memfile sets.hiv",
        "-hive -csv sets.hiv", "-hive -base10 sets.hiv", "-hive x -hive sets.hiv"}) {
    for (const std::string output : {"-out ", "-outfile ", "-diags "}) {
      for (const std::string name : {"sets.hiv", "soft", "hard"}) {
        const bool read = source != "-hive x -hive sets.hiv";
        expect({{source + " " + output + name,
                 spared(name, read ? is_source : "an argument that no option took names it")}});
        ASSERT_TRUE(evidence == content("sets.hiv"));
      }
    }
  }
  if (is_windows_program()) {
    for (const std::string name : {"sets.hiv:new", "./sets.hiv:new:$DATA", "sets.hiv::$DATA",
                                   "\\\\.\\PhysicalDrive0", "\\\\.\\C:"}) {
      const std::string refused = spared(host_path(name), "it begins like evidence");
      const bool device = name.starts_with('\\');  // not opened, whatever it holds
      expect({{"-pipe -out '" + name + "'",
               refused.substr(0, device ? refused.find('\n') + 1 : std::string::npos)}});
    }
  }
  run("-hive sets.hiv -all_controlsets -inc_slack -out new");
  run("-extract sets.hiv -diags diags -profile");
  EXPECT_EQ(before, state_of("sets.hiv"));
}

TEST_F(roads, nothing_but_its_own_is_replaced) {
  shell(
      "mkdir tree; cp sets.hiv tree/SYSTEM; echo kept | tee tree/x > aside; ln aside tree/hard;"
      "echo sets.hiv > list");
  const std::string before = state_of("tree/* list");
  const std::string walked = "it lies in the folder of -enumdir";
  const std::string shared = "it is to take the results and the diagnostics";
  for (const std::string option : {"-out ", "-diags "}) {
    const std::string shown = option == "-out " ? host_path("tree/x") : "tree/x";
    expect({{"-enumdir tree " + option + "tree/x", spared(shown, walked)},
            {"-enumdir ./tree " + option + "aside", spared("aside", walked)}});
    // Wine does not tell that a stream which a program inherits is a file that has a name.
    if (is_windows_program()) continue;
    expect({{"-pipe " + option + "list < list", spared("list", "it is the standard input")}});
  }
  EXPECT_EQ(before, state_of("tree/* list"));

  // One file for both is refused before it is there and afterwards, whatever it is called.
  for (int time = 0; time < 2; ++time) {
    expect({{"-hive sets.hiv -diags X -out X", spared("X", shared)},
            {"-extract sets.hiv -diags ./X -out X", spared("./X", shared)}});
  }
  if (!is_windows_program()) {
    expect({{"-hive sets.hiv -diags X > X", spared("X", shared), "no header: "}});
  }

  // The names of results in other places of the line take nothing from a second run.
  for (const std::string line : {"-out r -outfile r", "-csv_separator tab -out tab",
                                 "-hostname h -out h", "-out /dev/null -diags /dev/null"}) {
    for (int time = 0; time < 2; ++time) expect({{"-hive sets.hiv " + line, "", nothing, 0}});
  }
}

TEST_F(roads, the_file_behind_a_loop_device_is_evidence) {
  if (is_windows_program()) GTEST_SKIP() << "no loop devices";
  shell("truncate -s 1M vol.img");
  const run_result made =
      run_program("losetup", "-r --find --show vol.img", {.folder = folder.path()});
  if (made.exit_status != 0) GTEST_SKIP() << "no loop devices";
  const std::string device = made.out.substr(0, made.out.find('\n'));
  const std::string before = state_of("vol.img");
  expect({{"-image " + device + " -out vol.img", spared("vol.img", is_source)},
          {"-vmdk " + device + " -diags vol.img", spared("vol.img", is_source)}});
  EXPECT_EQ(before, state_of("vol.img"));
  shell("losetup -d " + device);
}

TEST_F(roads, samples_and_real_evidence_have_their_rows) {
  struct {
    const char* name;
    size_t current, all;
    int exit_status;
  } const hives[] = {{OVRIK_SOURCE_DIR "/samples/SYSTEM", 13, 17, 0},
                     {"win7.SYSTEM.xz", 330, 660, 0},
                     {"win10-1709.SYSTEM.xz", 1024, 1024, 0},
                     {"SAM.xz", 0, 0, failure}};
  for (const auto& hive : hives) {
    if (!fetch_real(hive.name, folder.path("real"))) GTEST_SKIP() << hive.name << " is not there";
    const run_result result = run("-hive real -bodyfile -all_controlsets");
    EXPECT_EQ("", result.err) << hive.name;
    EXPECT_EQ(hive.exit_status, result.exit_status) << hive.name;
    EXPECT_EQ(hive.current, body_rows("-hive real")) << hive.name;
    EXPECT_EQ(hive.all, rows_in(result.out)) << hive.name;
  }
  const std::pair<const char*, size_t> values[] = {
      {"WinXPx86.bin", 17}, {"win7x64.bin", 304}, {"Win81.bin", 1024}};
  for (const auto& [name, rows] : values) {
    if (!fetch_real(name, folder.path("real"))) GTEST_SKIP() << name << " is not there";
    SCOPED_TRACE(name);
    expect_roads_agree(content("real"), rows);
  }
}

}  // namespace
