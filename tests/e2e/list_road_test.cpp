// Lists of hives and raw values: a real pipe, real folder trees and what stands in them.
#include <sys/stat.h>

#include "e2e/e2e_support.h"

namespace test_support {
namespace {

const std::string hive_label = "Hive Location: ";

class list_road : public single_source {
 protected:
  list_road() {
    put_file("good", hive_of(u"C:\\kept.exe"));
    put_file("bare", hive_builder("SYSTEM").bytes());
  }

  /// A SYSTEM hive whose cache holds one program of that name.
  static bytes hive_of(const std::u16string& program) {
    return system_hive_with(cache_builder(14).entry({.path = program}).bytes()).bytes();
  }
};

TEST_F(list_road, takes_every_name_that_a_file_can_have) {
  words hives = {"a b", "c,d", "ж", "k%l", "-csv", "g'h"};
  if (!is_windows_program()) hives.insert(hives.end(), {"e|f", "h\"i", "\\\\?\\j"});
  // A line of 4095 bytes is one path, a longer one two.
  hives.emplace_back(std::string(4094, '/').replace(0, 1, ".") + "y");
  std::string list;
  for (const std::string& name : hives) {
    put_file(name.ends_with("/y") ? "y" : name, hive_of(u"C:\\x.exe"));
    list += name + (name == "ж" ? "\r\n\r\n" : "\n");
  }
  list += std::string(4095, '/').replace(0, 1, ".") + "y\n%LOOP%\n%NOT_SET%/y\n%HERE%%SLASH%y";
  const run_result result =
      run("-pipe", {.input = "\xEF\xBB\xBF" + list, .environment = "HERE=. SLASH=/ LOOP=%LOOP%"});
  EXPECT_EQ(result.exit_status, 0);
  hives.insert(hives.end(), {"y", "./y"});
  EXPECT_EQ(behind(hive_label, result.out), hives);
  EXPECT_EQ(behind("analyzing: ", result.err), hives);
  EXPECT_NE(result.out.find("\n\"command line: <filelist> ... | "), std::string::npos);
}

TEST_F(list_road, a_name_that_looks_like_a_variable_is_a_name_where_a_file_has_it) {
  shell(
      "mkdir -p r/%HERE% deep; cp good r/%HERE%/SYSTEM; cp good %HERE%; cp good deep/y;"
      "cp good r/%HERE%/%HERE%");
  const run_options given = {.input = "%HERE%\n%HERE%/y\n", .environment = "HERE=deep"};
  EXPECT_EQ(behind(hive_label, run("-pipe", given).out), (words{"%HERE%", "deep/y"}));
  EXPECT_EQ(behind(hive_label, run("-enumdir r -num_subdirs 1", given).out),
            (words{host_path("r/%HERE%/SYSTEM"), host_path("r/%HERE%/%HERE%")}));
  put_file("%HERE%", seven_cache());
  EXPECT_EQ(behind("Binary source: ", run("-pipe_binary", given).out), words{"%HERE%"});
}

TEST_F(list_road, passes_over_what_is_no_system_hive) {
  put_file("text", bytes(5000, 'x'));
  put_file("sam", hive_builder("SAM").bytes());
  shell("touch empty; mkfifo fifo");
  const std::string list =
      "text\n.\nempty\nsam\nmissing\nfifo\n" + std::string(5000, 'p') + "\nbare\ngood\n/dev/zero\n";
  const std::string said = "analyzing: text\nanalyzing: empty\nanalyzing: sam\nanalyzing: bare\n" +
                           wiped + "probs parsing from bare\n";
  // Control sets that cannot be told end the list.
  const std::pair<const char*, words> endings[] = {{"-filter nothing", {"good"}},
                                                   {"-all_controlsets", {}}};
  for (const auto& [options, found] : endings) {
    const run_result result = run(std::string("-pipe ") + options, {.input = list});
    EXPECT_EQ(behind(hive_label, result.out), found);
    EXPECT_EQ(result.err, said + (found.empty() ? "" : "analyzing: good\n"));
    EXPECT_EQ(result.exit_status, 0);
  }
}

TEST_F(list_road, an_abnormal_end_loses_nothing_of_the_hives_before) {
  hive_builder builder = system_hive_with(xp_cache());
  bytes broken = builder.bytes();
  put_u32(broken, builder.key_at("ControlSet001") + 0x30, 0);  // no security
  put_file("broken", broken);
  const run_result result = run("-pipe -csv -out out.csv", {.input = "good\nbroken\n"});
  EXPECT_EQ(result.exit_status, abnormal_end());
  EXPECT_NE(result.err.find("pSK != 0"), std::string::npos);
  EXPECT_NE(text("out.csv").find("C:\\kept.exe\n"), std::string::npos);
}

TEST_F(list_road, joined_runs_equal_a_single_one) {
  for (const char* name : {"a", "b", "c", "d"}) {
    put_file(name, hive_of(u"C:\\" + std::u16string(1, static_cast<char16_t>(*name))));
  }
  struct {
    const char *option, *header;
    size_t headers, headings;
  } const forms[] = {{"-csvl2t", "date,time,timezone,", 1, 0},
                     {"-bodyfile", "md5|name|inode", 1, 4},
                     {"-csv", "reg date, reg-UTC,", 4, 4}};
  for (const auto& form : forms) {
    SCOPED_TRACE(form.option);
    const auto results = [&](const std::string& list) {
      return run(std::string("-pipe ") + form.option, {.input = list}).out;
    };
    const std::string single = results("a\nb\nc\nd\n");
    EXPECT_EQ(behind(form.header, single).size(), form.headers);
    EXPECT_EQ(behind(hive_label, single).size(), form.headings);
    EXPECT_LT(single.find("C:\\a"), single.find("C:\\d"));
    const std::string parts = results("a\n") + results("b\nc\n") + results("d\n");
    EXPECT_EQ(body_of(shell(OVRIK_SOURCE_DIR "/scripts/join-results", parts)), body_of(single));
  }
}

TEST_F(list_road, enters_folders_to_the_depth_asked_for_and_ends_on_odd_trees) {
  shell(
      "mkdir -p r/a/deep r/z outside;"
      "for file in r/SYSTEM r/a/SYSTEM r/a/deep/SYSTEM r/a/x.hve r/a/x.hve.old r/z/SYSTEM "
      "outside/SYSTEM; do cp good $file; done;"
      "ln -s .. r/a/up; ln -s ../../outside r/a/out;"  // a cycle and one target, twice
      "ln -s ../outside r/out_again; ln -s nowhere r/dangling; mkfifo r/system.fifo");
  ASSERT_EQ(mknod(folder.path("r/s").c_str(), S_IFSOCK | 0600, 0), 0);
  const std::pair<const char*, words> walks[] = {
      {"r -num_subdirs 0", {"r/SYSTEM"}},
      {"r -num_subdirs 1",
       {"r/SYSTEM", "r/z/SYSTEM", "r/out_again/SYSTEM", "r/a/x.hve", "r/a/SYSTEM"}},
      {"r -num_subdirs 8",
       {"r/SYSTEM", "r/z/SYSTEM", "r/out_again/SYSTEM", "r/a/x.hve", "r/a/SYSTEM",
        "r/a/deep/SYSTEM"}},
      {"missing", {}},
  };
  for (auto [options, found] : walks) {
    for (std::string& path : found) path = host_path(path);
    const run_result result = run(std::string("-filter 'system|*.hve' -enumdir ") + options);
    EXPECT_EQ(result.exit_status, 0) << options;
    EXPECT_EQ(behind(hive_label, result.out), found) << options;
  }
  EXPECT_EQ(run("-enumdir ''").exit_status, failure);
}

TEST_F(list_road, reads_raw_values_by_list_with_filters_and_date_window) {
  const bytes cache =
      cache_builder(14).entry(u"C:\\x.exe", filetime(2022, 8, 15, 4, 24, 1)).bytes();
  for (const char* name : {"old.bin", "new.bin", "other.dat"}) put_file(name, cache);
  put_file("text.bin", as_bytes("no cache"));
  shell("touch empty.bin; touch -d 2010-01-01T00:00Z old.bin");
  const std::string list = "old.bin\nmissing.bin\nempty.bin\ntext.bin\nnew.bin\nother.dat\n";
  const std::pair<const char*, words> choices[] = {
      {"", {"old.bin", "new.bin", "other.dat"}},
      {"-filter '*.BIN'", {"old.bin", "new.bin"}},
      {"-filter 'old*' -filter '*.dat'", {"old.bin", "other.dat"}},
      {"-cmd_start_time 2015-01-01", {"new.bin", "other.dat"}},
      {"-cmd_stop_time 2010/01/01", {"old.bin"}},  // to the end of the day
      {"-cmd_stop_time '2010-01-01 00:00:00'", {"old.bin"}},
      {"-cmd_start_time '2010-01-01 00:00:01' -filter '*.bin'", {"new.bin"}},
      {"-filter_sig '31307473|52'", {"old.bin", "new.bin", "other.dat"}},
      {"-filter_sig '31307473,51'", {}},
  };
  for (const auto& [options, sources] : choices) {
    SCOPED_TRACE(options);
    const run_result result = run(std::string("-pipe_binary -csv ") + options, {.input = list});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(behind("Binary source: ", result.out), sources);
    EXPECT_EQ(behind("file mod, time-UTC,", result.out).size(), sources.size());
  }
  const run_options given = {.input = "new.bin\nempty.bin\ntext.bin\nnone\n",
                             .folder = folder.path()};
  const std::string rule(105, '-');
  expect({{"-pipe_binary -livesys -bodyfile -diags d", "",
           rule + "\nArtifact: Shim Cache\nBinary source: new.bin\n" + rule +
               "\nmd5|name|inode|mode as string|uid|gid|size|access time|modify time|mft time|"
               "create time\n0|entry# 0; C:\\x.exe|0||0|0|0|0|1660537441|0|0\n\n",
           0}},
         given);
  expect({{"-pipe_binary -out new.bin", spared("new.bin", "it begins like evidence")}}, given);
  EXPECT_TRUE(
      run_ovrik("-pipe_binary", given).err.starts_with("\x1b[2K\r    \ranalyzing: ..new.bin\r"));
  EXPECT_NE(text("d").find("Analyzing: new.bin\n successfully processed [hdrs: 0]\n"
                           "Analyzing: empty.bin\n no data in file\n"
                           "Analyzing: text.bin\n prob parsing shim cache\n"
                           "Analyzing: none\n prob getting file stats\n"),
            std::string::npos)
      << text("d");
}

}  // namespace
}  // namespace test_support
