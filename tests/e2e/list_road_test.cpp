// Lists of hives and raw values: a real pipe, real folder trees and what stands in them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

#include "e2e/e2e_support.h"

namespace test_support {
namespace {

namespace fs = std::filesystem;

/// A SYSTEM hive whose cache holds one program of that name.
bytes hive_of(const std::u16string& program) {
  return system_hive_with(cache_builder(14).entry({.path = program}).bytes()).bytes();
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

size_t count_of(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

/// What follows `label` on its lines, in order.
std::vector<std::string> labelled(const std::string& text, const std::string& label) {
  std::vector<std::string> found;
  for (const std::string& line : lines_of(text)) {
    if (line.starts_with(label)) found.push_back(line.substr(label.size()));
  }
  return found;
}

using names = std::vector<std::string>;

TEST(pipe, takes_every_name_that_a_file_can_have) {
  const temp_dir folder;
  names hives = {"a b", "c,d", "ж", "k%l", "-csv", "g'h"};
  if (!is_windows_program()) hives.insert(hives.end(), {"e|f", "h\"i", "\\\\?\\j"});
  std::string list;
  for (const std::string& name : hives) {
    write_file(folder.path(name), hive_of(u"C:\\x.exe"));
    list += name + (name == "ж" ? "\r\n\r\n" : "\n");
  }
  list.pop_back();  // no final line end
  const run_result run = run_ovrik({"-pipe"}, {.input = list, .folder = folder.path()});
  EXPECT_EQ(run.exit_status, 0);
  EXPECT_EQ(labelled(run.out, "Hive Location: "), hives);
  EXPECT_EQ(count_of(run.err, "analyzing: a b\n"), 1U);
  EXPECT_NE(lines_of(run.out)[1].find("\"command line: <filelist> ... | "), std::string::npos);
}

TEST(pipe, passes_over_what_is_no_system_hive) {
  const temp_dir folder;
  write_file(folder.path("text"), std::string(5000, 'x'));
  write_file(folder.path("empty"), "");
  write_file(folder.path("sam"), hive_builder("SAM").bytes());
  write_file(folder.path("bare"), hive_builder("SYSTEM").bytes());
  write_file(folder.path("good"), hive_of(u"C:\\x.exe"));
  ASSERT_EQ(mkfifo(folder.path("fifo").c_str(), 0600), 0);
  const std::string list =
      "text\n.\nempty\nsam\nmissing\nfifo\n" + std::string(5000, 'p') + "\nbare\ngood\n/dev/zero\n";
  const run_result run = run_ovrik({"-pipe", "-filter", "nothing", "-quiet"},
                                   {.input = list, .folder = folder.path()});
  EXPECT_EQ(run.exit_status, 0);
  EXPECT_EQ(labelled(run.out, "Hive Location: "), names{"good"});
  EXPECT_EQ(labelled(run.err, "analyzing: "),
            (names{"text", "empty", "sam", "bare", "good"}));  // not subject to -quiet
  EXPECT_EQ(count_of(run.err, "probs parsing from bare\n"), 1U);
}

TEST(pipe, a_line_of_4095_bytes_is_one_path_and_a_longer_one_two) {
  const temp_dir folder;
  write_file(folder.path("y"), hive_of(u"C:\\x.exe"));
  std::string longest;
  while (longest.size() < 4094) longest += "./";
  EXPECT_EQ(labelled(run_ovrik({"-pipe"}, {.input = longest + "y\n", .folder = folder.path()}).out,
                     "Hive Location: "),
            names{longest + "y"});
  EXPECT_EQ(labelled(run_ovrik({"-pipe"}, {.input = longest + "/y\n", .folder = folder.path()}).err,
                     "analyzing: "),
            names{"y"})
      << "the second piece";
}

TEST(pipe, all_controlsets_ends_the_list_at_a_hive_without_them) {
  const temp_dir folder;
  write_file(folder.path("good"), hive_of(u"C:\\x.exe"));
  write_file(folder.path("bare"), hive_builder("SYSTEM").bytes());
  const run_result run = run_ovrik({"-pipe", "-all_controlsets"},
                                   {.input = "good\nbare\ngood\n", .folder = folder.path()});
  EXPECT_EQ(run.exit_status, 0);
  EXPECT_EQ(labelled(run.out, "Hive Location: "), names{"good"});
  EXPECT_EQ(count_of(run.err, "probs parsing from bare\n"), 1U);
}

TEST(pipe, an_abnormal_end_loses_nothing_of_the_hives_before) {
  const temp_dir folder;
  write_file(folder.path("good"), hive_of(u"C:\\kept.exe"));
  hive_builder builder = system_hive_with(cache_builder(14).entry({.path = u"C:\\x"}).bytes());
  bytes broken = builder.bytes();
  put_u32(broken, builder.key_at("ControlSet001") + 0x30, 0);  // no security
  write_file(folder.path("broken"), broken);
  const run_result run = run_ovrik({"-pipe", "-csv", "-out", "out.csv"},
                                   {.input = "good\nbroken\n", .folder = folder.path()});
  EXPECT_TRUE(ended_abnormally(run));
  EXPECT_NE(run.err.find("pSK != 0"), std::string::npos);
  EXPECT_NE(as_text(read_file(folder.path("out.csv"))).find("C:\\kept.exe\n"), std::string::npos);
}

TEST(pipe, the_fixed_records_have_one_header_for_the_stream) {
  const temp_dir folder;
  write_file(folder.path("a"), hive_of(u"C:\\a.exe"));
  write_file(folder.path("b"), hive_of(u"C:\\b.exe"));
  struct form {
    const char* option;
    const char* header;
    size_t headers;
    size_t headings;
  };
  for (const form& expected :
       {form{"-csvl2t", "date,time,timezone,", 1, 0}, form{"-bodyfile", "md5|name|inode", 1, 2},
        form{"-csv", "reg date, reg-UTC,", 2, 2}}) {
    const run_result run =
        run_ovrik({"-pipe", expected.option}, {.input = "a\nb\n", .folder = folder.path()});
    EXPECT_EQ(count_of(run.out, expected.header), expected.headers) << expected.option;
    EXPECT_EQ(count_of(run.out, "Hive Location: "), expected.headings) << expected.option;
    EXPECT_LT(run.out.find("C:\\a.exe"), run.out.find("C:\\b.exe")) << expected.option;
  }
}

TEST(pipe, variables_come_from_the_environment) {
  const temp_dir folder;
  write_file(folder.path("x"), hive_of(u"C:\\x.exe"));
  const run_result run = run_ovrik(
      {"-pipe"},
      {.input = "%OVRIK_HERE%/x\n%OVRIK_LOOP%\n%NOT_SET%/x\n%OVRIK_HERE%%OVRIK_SLASH%x\n",
       .environment = {
           {"OVRIK_HERE", folder.path()}, {"OVRIK_SLASH", "/"}, {"OVRIK_LOOP", "%OVRIK_LOOP%"}}});
  EXPECT_EQ(run.exit_status, 0);
  EXPECT_EQ(labelled(run.out, "Hive Location: "), (names{folder.path("x"), folder.path("x")}));
}

TEST(walk, enters_folders_to_the_depth_asked_for_and_ends_on_odd_trees) {
  const temp_dir folder;
  fs::create_directories(folder.path("r/a/deep"));
  fs::create_directories(folder.path("r/z"));
  fs::create_directories(folder.path("outside"));
  for (const char* place : {"r/SYSTEM", "r/a/SYSTEM", "r/a/deep/SYSTEM", "r/a/x.hve",
                            "r/a/x.hve.old", "r/z/SYSTEM", "outside/SYSTEM"}) {
    write_file(folder.path(place), hive_of(u"C:\\x.exe"));
  }
  fs::create_directory_symlink("..", folder.path("r/a/up"));  // a cycle
  fs::create_directory_symlink("../../outside", folder.path("r/a/out"));
  fs::create_directory_symlink("../outside", folder.path("r/out_again"));  // one target, twice
  fs::create_symlink("nowhere", folder.path("r/dangling"));
  ASSERT_EQ(mkfifo(folder.path("r/system.fifo").c_str(), 0600), 0);
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  folder.path("r/s").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  close(listener);

  const auto walked = [&folder](const std::string& depth) {
    const run_result run =
        run_ovrik({"-enumdir", "r", "-num_subdirs", depth, "-filter", "system|*.hve"},
                  {.folder = folder.path()});
    EXPECT_EQ(run.exit_status, 0);
    return labelled(run.out, "Hive Location: ");
  };
  const auto on_host = [](names paths) {
    for (std::string& path : paths) path = host_path(path);
    return paths;
  };
  EXPECT_EQ(walked("0"), on_host({"r/SYSTEM"}));
  EXPECT_EQ(walked("8"), on_host({"r/SYSTEM", "r/z/SYSTEM", "r/out_again/SYSTEM", "r/a/x.hve",
                                  "r/a/SYSTEM", "r/a/deep/SYSTEM"}));
  EXPECT_EQ(walked("1"),
            on_host({"r/SYSTEM", "r/z/SYSTEM", "r/out_again/SYSTEM", "r/a/x.hve", "r/a/SYSTEM"}));
}

TEST(walk, a_folder_that_cannot_be_read_holds_nothing) {
  const temp_dir folder;
  fs::create_directories(folder.path("r/locked"));
  write_file(folder.path("r/SYSTEM"), hive_of(u"C:\\x.exe"));
  if (geteuid() == 0) {
    // Nothing is closed to root; a folder that is gone by the time it is listed is as unreadable.
    EXPECT_EQ(run_ovrik({"-enumdir", "missing"}, {.folder = folder.path()}).exit_status, 0);
  } else {
    fs::permissions(folder.path("r/locked"), fs::perms::none);
  }
  const run_result run =
      run_ovrik({"-enumdir", "r", "-num_subdirs", "2"}, {.folder = folder.path()});
  fs::permissions(folder.path("r/locked"), fs::perms::owner_all);
  EXPECT_EQ(labelled(run.out, "Hive Location: "), names{host_path("r/SYSTEM")});
  EXPECT_EQ(run_ovrik({"-enumdir", ""}).exit_status, failure);
}

TEST(pipe_binary, reads_values_by_list_with_filters_and_date_window) {
  const temp_dir folder;
  const bytes cache = cache_builder(14).entry({.path = u"C:\\x.exe"}).bytes();
  for (const char* name : {"old.bin", "new.bin", "other.dat"}) write_file(folder.path(name), cache);
  write_file(folder.path("text.bin"), "no cache");
  write_file(folder.path("empty.bin"), "");
  const timespec old_time[] = {{1262304000, 0}, {1262304000, 0}};  // 2010-01-01
  ASSERT_EQ(utimensat(AT_FDCWD, folder.path("old.bin").c_str(), old_time, 0), 0);
  const std::string list = "old.bin\nmissing.bin\nempty.bin\ntext.bin\nnew.bin\nother.dat\n";
  struct choice {
    const char* reason;
    names options;
    names sources;
  };
  const choice choices[] = {
      {"no filter", {}, {"old.bin", "new.bin", "other.dat"}},
      {"by name", {"-filter", "*.BIN"}, {"old.bin", "new.bin"}},
      {"two filters", {"-filter", "old*", "-filter", "*.dat"}, {"old.bin", "other.dat"}},
      {"from", {"-cmd_start_time", "2015-01-01"}, {"new.bin", "other.dat"}},
      {"to the end of a day", {"-cmd_stop_time", "2010/01/01"}, {"old.bin"}},
      {"to a time", {"-cmd_stop_time", "2010-01-01 00:00:00"}, {"old.bin"}},
      {"just behind", {"-cmd_start_time", "2010-01-01 00:00:01", "-filter", "*.bin"}, {"new.bin"}},
      {"signature at 52", {"-filter_sig", "31307473|52"}, {"old.bin", "new.bin", "other.dat"}},
      {"signature elsewhere", {"-filter_sig", "31307473,51"}, {}},
  };
  for (const choice& chosen : choices) {
    names arguments = {"-pipe_binary", "-quiet", "-csv"};
    arguments.insert(arguments.end(), chosen.options.begin(), chosen.options.end());
    const run_result run = run_ovrik(arguments, {.input = list, .folder = folder.path()});
    EXPECT_EQ(run.exit_status, 0) << chosen.reason;
    EXPECT_EQ(run.err, "") << chosen.reason;
    EXPECT_EQ(labelled(run.out, "Binary source: "), chosen.sources) << chosen.reason;
    EXPECT_EQ(count_of(run.out, "file mod, time-UTC,"), chosen.sources.size()) << chosen.reason;
  }
}

TEST(pipe_binary, writes_a_heading_and_a_header_for_each_file_and_tells_the_diagnostics) {
  const temp_dir folder;
  write_file(folder.path("a.bin"),
             cache_builder(14).entry(u"C:\\x.exe", filetime(2022, 8, 15, 4, 24, 1)).bytes());
  write_file(folder.path("t"), "no cache");
  const run_result run = run_ovrik({"-pipe_binary", "-livesys", "-bodyfile", "-diags", "d"},
                                   {.input = "a.bin\nt\nnone\n", .folder = folder.path()});
  const std::string rule(105, '-');
  EXPECT_EQ(body_of(run.out),
            rule + "\nArtifact: Shim Cache\nBinary source: a.bin\n" + rule +
                "\nmd5|name|inode|mode as string|uid|gid|size|access time|modify time|mft time|"
                "create time\n0|entry# 0; C:\\x.exe|0||0|0|0|0|1660537441|0|0\n\n");
  EXPECT_NE(run.err.find("\x1b[2K\r    \ranalyzing: ..a.bin\r"), std::string::npos);
  const std::string diagnostics = as_text(read_file(folder.path("d")));
  EXPECT_NE(diagnostics.find("Analyzing: a.bin\n successfully processed [hdrs: 0]\n"
                             "Analyzing: t\n prob parsing shim cache\n"
                             "Analyzing: none\n prob getting file stats\n"),
            std::string::npos)
      << diagnostics;
}

TEST(scale_out, joined_runs_equal_a_single_one) {
  const temp_dir folder;
  std::string list[2];
  for (int i = 0; i < 6; ++i) {
    const std::string name = "h" + std::to_string(i);
    write_file(folder.path(name),
               hive_of(u"C:\\" + std::u16string(1, static_cast<char16_t>('a' + i))));
    list[i / 3] += name + "\n";
  }
  for (const char* form : {"-csv", "-csvl2t", "-bodyfile"}) {
    const auto run = [&](const std::string& input) {
      return run_ovrik({"-pipe", form, "-quiet"}, {.input = input, .folder = folder.path()}).out;
    };
    const run_result joined = run_program(OVRIK_SOURCE_DIR "/scripts/join-results", {},
                                          {.input = run(list[0]) + run(list[1])});
    EXPECT_EQ(body_of(joined.out), body_of(run(list[0] + list[1]))) << form;
  }
}

}  // namespace
}  // namespace test_support
