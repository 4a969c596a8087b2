// What only the program for Windows has to do with: events, devices, the long prefix, streams.
#include <algorithm>
#include <filesystem>

#include "e2e/volume_test.h"

namespace test_support {
namespace {

namespace fs = std::filesystem;

/// Elsewhere ctest leaves these tests out; who runs all of them by hand sees them skipped.
class windows_program : public volume_test {
 protected:
  void SetUp() override {
    if (!is_windows_program()) GTEST_SKIP() << "this is the program for another host";
    volume_test::SetUp();
  }

  run_result run_helper(const std::string& name, const shell_words& arguments) const {
    return run_ovrik(arguments, {.folder = folder.path()}, name);
  }

  /// What a terminal shows, of which Wine makes a console.
  std::string shown(const std::string& line) const {
    return run_program("script", {"-qec", line, "/dev/null"}, {.folder = folder.path()}).out;
  }
};

TEST_F(windows_program, an_event_is_raised_at_the_end_of_the_run) {
  const std::string program = program_path();
  for (const std::string name : {"ovrik-done", "ovrik-ж"}) {
    const run_result result = run_helper(
        "wait_for_event.exe", {name, program, "-quiet", "-hive", "sets.hiv", "-signal", name});
    EXPECT_EQ(result.err, "raised\n");
    EXPECT_EQ(body_of(result.out), body("-hive sets.hiv"));
  }
  EXPECT_EQ(run_helper("wait_for_event.exe", {"ovrik-done", program, "-hive", "none"}).err,
            wiped + "Problem opening none\n" + wiped + "not raised\n");
}

TEST_F(windows_program, a_console_gets_characters_whole_and_is_put_back_as_it_was) {
  hive_builder builder = system_hive_with(xp_cache());
  bytes broken = builder.bytes();
  put_u32(broken, builder.key_at("ControlSet001") + 0x30, 0);  // no security
  put_file("broken", broken);
  for (const std::string line : {"none", "broken"}) {
    SCOPED_TRACE(line);
    shown(start_of_program("watch_console.exe") + " report " + line + " " + program_path() +
          " -pipe");
    EXPECT_EQ(text("report"),
              "before: code page 437, mode 3\n"
              "within: code page 65001, mode 7\n"
              "after: code page 437, mode 3\n");
  }
  const std::string said = shown(start_of_program() + " -dateformat Жü名 -x -hive Жx");
  for (const char* part : {"invalid Жü名, using default format", "Problem opening Жx"}) {
    EXPECT_NE(said.find(part), std::string::npos) << part << " in " << said;
  }
}

TEST_F(windows_program, results_need_no_standard_output_and_go_through_pipes) {
  const std::string wanted_body = body("-hive sets.hiv"), pipe = "\\\\.\\pipe\\ovrik";
  const words run_of_hive = {program_path(), "-quiet", "-hive", "sets.hiv"};
  const auto apart = [&](const std::string& name, const words& last) {
    words arguments = {name};
    arguments.insert(arguments.end(), run_of_hive.begin(), run_of_hive.end());
    arguments.insert(arguments.end(), last.begin(), last.end());
    return run_helper("run_apart.exe", arguments);
  };
  EXPECT_EQ(apart("detached", {"-out", "rows"}).exit_status, 0);
  EXPECT_EQ(body_of(text("rows")), wanted_body);
  EXPECT_EQ(apart("detached", {}).exit_status, failure);
  const run_result sent = apart(pipe, {"-out", pipe});
  EXPECT_EQ(sent.exit_status, 0);
  EXPECT_EQ(body_of(sent.out), wanted_body);
  EXPECT_NE(apart(pipe, {"-diags", pipe}).out.find("->" + program_path()), std::string::npos);
}

TEST_F(windows_program, names_are_taken_exactly_and_links_followed_once) {
  fs::create_directory(folder.path("tree"));
  fs::copy(folder.path("sets.hiv"), folder.path("tree/name."));
  fs::copy(folder.path("sets.hiv"), folder.path("tree/name "));
  put_file("tree/name", bytes(100));
  fs::create_symlink(folder.path("tree"), folder.path("tree/up"));
  const std::string there = "Z:" + host_path(folder.path("tree"));
  for (const std::string& root : {there, "\\\\?\\" + there, std::string("tree")}) {
    SCOPED_TRACE(root);
    words found = behind("Hive Location: ", run({"-enumdir", root, "-num_subdirs", "3"}).out);
    std::sort(found.begin(), found.end());
    const std::string shown = root == "tree" ? root : there;
    EXPECT_EQ(found, (words{shown + "\\name ", shown + "\\name."}));
  }
  // What is written to is the file without the full stop, whether or not there is one with it.
  put_file("sets.hiv.", {});
  for (const std::string out : {"sets.hiv.", ".\\sets.hiv. . "}) {
    expect({{{"-hive", "sets.hiv", "-out", out}, spared(out, is_source)}});
  }
}

TEST_F(windows_program, a_volume_is_read_through_its_device) {
  make_small_volume("volume", "-c 4096");
  // Wine takes a link beside that of a drive for the drive's device.
  const fs::path link = fs::path(std::getenv("WINEPREFIX")) / "dosdevices/o::";
  fs::remove(link);
  fs::create_symlink(folder.path("volume"), link);
  // Beside the image road, which finds a length, the reader of devices, which has to ask.
  EXPECT_EQ(run_helper("ask_windows.exe", {"device", "\\\\.\\O:"}).out, "8388608 NTFS    ");
  EXPECT_EQ(run_helper("ask_windows.exe", {"device", "\\\\.\\O:\\"}).out, "8388608 NTFS    ");
  EXPECT_EQ(run_helper("ask_windows.exe", {"device", "O:"}).out, "does not open");
  EXPECT_EQ(rows({"-image", "\\\\.\\O:"}), wanted);
  fs::remove(link);
  EXPECT_EQ(run({"-image", "\\\\.\\O:"}).exit_status, failure);
}

TEST_F(windows_program, paths_have_a_form_of_any_length) {
  const std::string here = "Z:" + host_path(folder.path());
  struct {
    const char* form;
    std::string path, expected;
  } const forms[] = {
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
  for (const auto& [form, path, expected] : forms) {
    EXPECT_EQ(run_helper("ask_windows.exe", {form, path}).out, expected) << form << path;
  }
}

TEST_F(windows_program, what_the_running_system_lacks_does_not_open) {
  const std::string system = "\\windows\\system32\\config\\system";
  const std::string copy = "\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy99";
  const std::string opening = wiped + "Problem opening ";
  expect({
      {{"-livesys"},
       opening + system + "\n" + wiped + "prob reading C:: 512 bytes at offset 0x0\n"},
      {{"-vss", "99"}, opening + copy + system + "\n"},
      {{"-vss", copy}, opening + copy + system + "\n"},
      {{"-vss", copy + "\\windows"}, opening + copy + system + "\n"},
      {{"-vss", "3\\foo"}, opening + copy.substr(0, copy.size() - 2) + "3\\foo" + system + "\n"},
      {{"-hive", "%vss%99" + system}, opening + copy + system + "\n"},
      {{"-hive", "Q:\\none"}, opening + "Q:\\none" + "\n"},
  });
}

TEST_F(windows_program, the_long_prefix_is_taken_from_names_of_a_list) {
  const std::string path = "Z:" + host_path(folder.path("sets.hiv"));
  const std::string out = run("-pipe", {.input = "\\\\?\\" + path + "\n"}).out;
  EXPECT_EQ(behind("Hive Location: ", out), words{path});
  EXPECT_EQ(body({"-hive", path}), body({"-hive", "\\\\?\\" + path}));
}

TEST_F(windows_program, it_is_small_and_needs_nothing_but_the_system) {
  EXPECT_LT(fs::file_size(program_path()), 3U << 20);
  words needed =
      behind("DLL Name: ", run_program("x86_64-w64-mingw32-objdump", {"-p", program_path()}).out);
  std::sort(needed.begin(), needed.end());
  EXPECT_EQ(needed, (words{"ADVAPI32.dll", "KERNEL32.dll", "msvcrt.dll"}));
}

}  // namespace
}  // namespace test_support
