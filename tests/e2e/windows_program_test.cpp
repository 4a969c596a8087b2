// What only the program for Windows has to do with: events, devices, the long prefix, streams.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "e2e/e2e_support.h"
#include "support/ntfs_builder.h"

namespace test_support {
namespace {

namespace fs = std::filesystem;

class windows_program : public single_source {
 protected:
  void SetUp() override {
    if (!is_windows_program()) GTEST_SKIP() << "this is the program for another host";
  }

  run_result run_helper(const std::string& name, const words& arguments) const {
    return run_beside_ovrik(name, arguments, {.folder = folder.path()});
  }

  static std::string program() { return ovrik_command().back(); }
};

TEST_F(windows_program, an_event_is_raised_at_the_end_of_the_run) {
  for (const std::string name : {"ovrik-done", "ovrik-ж"}) {
    const run_result result = run_helper(
        "wait_for_event.exe", {name, program(), "-quiet", "-hive", "sets.hiv", "-signal", name});
    EXPECT_EQ(result.err, "raised\n");
    EXPECT_EQ(body_of(result.out), body({"-hive", "sets.hiv"}));
  }
  EXPECT_EQ(
      run_helper("wait_for_event.exe", {"ovrik-done", program(), "-hive", "none"}).err,
      "\x1b[2K\r" + std::string(27, ' ') + "\rProblem opening none\n" + wiped + "not raised\n");
}

TEST_F(windows_program, the_console_is_put_back_as_it_was) {
  const std::vector<std::string> command = ovrik_command();
  const fs::path helper = fs::path(command.back()).replace_filename("watch_console.exe");
  // Wine makes a console of a terminal.
  run_program("/usr/bin/script",
              {"-qec", command.front() + " " + helper.string() + " report " + program() + " -pipe",
               "/dev/null"},
              {.folder = folder.path()});
  EXPECT_EQ(as_text(content("report")),
            "before: code page 437, mode 3\n"
            "within: code page 65001, mode 7\n"
            "after: code page 437, mode 3\n");
}

TEST_F(windows_program, a_console_gets_characters_whole) {
  const std::vector<std::string> command = ovrik_command();
  const std::string line = command.front() + " " + program() + " -dateformat Жü名 -x -hive Жx";
  const std::string shown =
      run_program("/usr/bin/script", {"-qec", line, "/dev/null"}, {.folder = folder.path()}).out;
  for (const char* text : {"invalid Жü名, using default format", "Problem opening Жx"}) {
    EXPECT_NE(shown.find(text), std::string::npos) << text << " in " << shown;
  }
}

TEST_F(windows_program, a_volume_is_read_through_its_device) {
  ntfs_builder built(256);
  const bytes hive = content("sets.hiv");
  const auto clusters =
      static_cast<uint8_t>((hive.size() + built.cluster_bytes - 1) / built.cluster_bytes);
  built.cluster(128, hive);
  built.record(13,
               {resident_attribute(0x30, file_name(12, u"SyStem")),
                non_resident_attribute(0x80, {0x21, clusters, 128, 0, 0}, {.size = hive.size()})});
  put_file("volume", built.volume);
  // Wine takes a link beside that of a drive for the drive's device.
  const fs::path link = fs::path(std::getenv("WINEPREFIX")) / "dosdevices/o::";
  fs::remove(link);
  fs::create_symlink(folder.path("volume"), link);
  // Beside the image road, which finds a length, the reader of devices, which has to ask.
  EXPECT_EQ(run_helper("ask_windows.exe", {"device", "\\\\.\\O:"}).out,
            std::to_string(built.volume.size()) + " NTFS    ");
  EXPECT_EQ(run_helper("ask_windows.exe", {"device", "O:"}).out, "does not open");
  const run_result result = run({"-image", "\\\\.\\O:"});
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(body_of(result.out).substr(body_of(result.out).find("reg date")),
            body({"-hive", "sets.hiv"}).substr(body({"-hive", "sets.hiv"}).find("reg date")));
  fs::remove(link);
  EXPECT_EQ(run({"-image", "\\\\.\\O:"}).exit_status, failure);
}

TEST_F(windows_program, paths_have_a_form_of_any_length) {
  const std::string here = "Z:" + host_path(folder.path());
  struct {
    const char* form;
    std::string path, expected;
  } const rows[] = {
      {"long-form", "C:\\a\\b", "\\\\?\\C:\\a\\b"},
      {"long-form", "c:/a/b", "\\\\?\\c:\\a\\b"},
      {"long-form", "C:\\a.", "\\\\?\\C:\\a."},
      {"long-form", "a\\..\\b", "\\\\?\\" + here + "\\b"},
      {"long-form", "Ж/b", "\\\\?\\" + here + "\\Ж\\b"},
      {"long-form", "\\\\server\\share\\a", "\\\\?\\UNC\\server\\share\\a"},
      {"long-form", "\\\\?\\C:\\a", "\\\\?\\C:\\a"},
      {"long-form", "\\\\.\\C:", "\\\\.\\C:"},
      {"absolute", " \"a b\" ", here + "\\a b"},
      {"absolute", "C:/a/../b", "C:\\b"},
      {"absolute", "\\\\.\\PhysicalDrive0", "\\\\.\\PhysicalDrive0"},
      {"absolute", "\"\"", ""},
      {"stripped", "\\\\?\\C:\\x", "C:\\x"},
      {"stripped", "\\\\?\\", "\\\\?\\"},
      {"stripped", "\\\\?\\UNC\\server\\x", "\\\\?\\UNC\\server\\x"},
      {"stripped", "C:\\" + std::string(60, 'g'), "C:\\" + std::string(60, 'g')},
      {"stripped", "\\\\?\\C:\\" + std::string(60, 'g'), "C:\\" + std::string(60, 'g')},
      {"stripped", "\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy3\\x",
       "\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy3\\x"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(run_helper("ask_windows.exe", {row.form, row.path}).out, row.expected) << row.path;
  }
}

TEST_F(windows_program, what_the_running_system_lacks_does_not_open) {
  const std::string hive = "\\windows\\system32\\config\\system";
  const std::string copy = "\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy99";
  struct {
    words arguments;
    std::string opened;
  } const rows[] = {
      {{"-livesys"}, hive},
      {{"-vss", "99"}, copy + hive},
      {{"-vss", copy}, copy + hive},
      {{"-vss", copy + "\\windows"}, copy + hive},
      {{"-vss", "3\\foo"}, copy.substr(0, copy.size() - 2) + "3\\foo" + hive},
      {{"-hive", "%vss%99" + hive}, copy + hive},
      {{"-hive", "Q:\\none"}, "Q:\\none"},
  };
  for (const auto& row : rows) {
    const run_result result = run(row.arguments);
    EXPECT_EQ(result.err, wiped + "Problem opening " + row.opened + "\n");
    EXPECT_EQ(result.exit_status, failure) << row.arguments.back();
  }
}

TEST_F(windows_program, the_long_prefix_is_taken_from_names_of_a_list) {
  const std::string path = "Z:" + host_path(folder.path("sets.hiv"));
  const std::string out = run({"-pipe"}, {.input = "\\\\?\\" + path + "\n"}).out;
  EXPECT_NE(out.find("Hive Location: " + path + "\n"), std::string::npos) << out;
  EXPECT_EQ(body({"-hive", path}), body({"-hive", "\\\\?\\" + path}));
}

TEST_F(windows_program, it_is_small_and_needs_nothing_but_the_system) {
  EXPECT_LT(fs::file_size(program()), 3U << 20);
  const std::string told = run_program("x86_64-w64-mingw32-objdump", {"-p", program()}).out;
  const std::vector<std::string> system = {"ADVAPI32.dll", "KERNEL32.dll", "msvcrt.dll"};
  std::vector<std::string> needed;
  const std::string label = "DLL Name: ";
  for (size_t at = 0; (at = told.find(label, at)) != std::string::npos;) {
    at += label.size();
    needed.push_back(told.substr(at, told.find('\n', at) - at));
  }
  std::sort(needed.begin(), needed.end());
  EXPECT_EQ(needed, system);
}

}  // namespace
}  // namespace test_support
