// What the values of options mean: dates, filters, aliases, shadow copies and variables in paths.
#include <gtest/gtest.h>

#include <cstdlib>

#include "driver/options/date_window.h"
#include "driver/options/file_filter.h"
#include "driver/options/hive_aliases.h"
#include "driver/options/path_variables.h"
#include "sources/disk/shadow_copy.h"
#include "support/bytes.h"

namespace {

using namespace ovrik;
using test_support::filetime;

TEST(date_window, takes_dates_with_and_without_times) {
  const uint64_t day = filetime(2020, 2, 29), end = filetime(2020, 2, 29, 23, 59, 59);
  const uint64_t minute = filetime(2030, 1, 2, 15, 4);
  struct {
    const char* value;
    bool taken;
    uint64_t start, stop;  ///< 0: that side stays open
  } const rows[] = {{"2020-02-29", true, day, end},
                    {"2020/2/29 0:00:00", true, day, day},
                    {"30-Jan-2 3:04 PM", true, minute, minute},
                    {"2020-13-01", true, 0, 0},
                    {"2020-01-01 noon", true, 0, 0},
                    {"20200101", false, 0, 0},
                    {"", false, 0, 0}};
  for (const auto& row : rows) {
    cmd_params start, stop;
    EXPECT_EQ(row.taken, take_start_time(start, row.value)) << row.value;
    EXPECT_EQ(row.taken, take_stop_time(stop, row.value)) << row.value;
    EXPECT_EQ(row.start, start.start_time_on ? start.start_filetime : 0) << row.value;
    EXPECT_EQ(row.stop, stop.stop_time_on ? stop.stop_filetime : 0) << row.value;
  }
  cmd_params options;  // a window ends no earlier than it starts
  EXPECT_TRUE(take_start_time(options, "2020-02-02 10:00"));
  EXPECT_TRUE(take_stop_time(options, "2020-02-02 09:59:59") && !options.stop_time_on);
  EXPECT_TRUE(take_stop_time(options, "2020-02-02 10:00") && options.stop_time_on);
}

TEST(filter_language, passes_and_refuses_paths) {
  struct {
    const char *filter, *path;
    bool passes;
    const char* reason;
  } const cases[] = {
      {"a|*|b", "any", true, "a star alone stands for the whole list"},
      {"*.hve|system", "x/foo.hve", true, "the end of a name"},
      {"*.hve|system", "x/SYSTEM", true, "a whole name, whatever its case"},
      {"*.hve|system", "x/system.old", false, "more than the whole name"},
      {"*.hve,system", "system", true, "commas separate too"},
      {"system*", "SYSTEM.LOG", true, "the start of a name"},
      {"system*", "oldsystem", false, "the text stands later"},
      {"*ste*", "SYSTEM", true, "any part of a name"},
      {"sy*em", "syem", true, "a star inside is taken out"},
      {"sy*em", "system", false, "and stands for nothing"},
      {"*.exe", "a.exe.exe", false, "only the first occurrence counts"},
      {"\\config", "c/Config/x", true, "the end of the folder's path"},
      {"\\config", "c/configs/x", false, "the hit must end where a folder's name does"},
      {"\\config", "c/config/deep/x", true, "the folder may lie further up"},
      {"\\config", "config", false, "the name of the file is no folder"},
      {"\\system32\\config", "w/System32/config/x", true, "either separator does"},
      {"system:stream", "system", true, "a stream is not compared"},
      {"*:stream", "any", true, "a star in front of a stream takes all"},
      {"", "any", false, "an empty text equals no name"},
      {"a||b", "", false, "an empty path never passes"},
      {"**", "any", true, "two stars hold any part"},
      {"ж*", "Ж", false, "only A to Z have two cases"},
  };
  bool unreadable = true;
  std::vector<file_filter> filters;
  for (const auto& c : cases) {
    parse_filter(filters, c.filter);
    EXPECT_EQ(filter_accepts_path(c.path, filters, unreadable), c.passes)
        << c.filter << " on " << c.path << ": " << c.reason;
    EXPECT_FALSE(unreadable);
  }
  filters.clear();
  append_signature_filter(filters, "xyz");
  EXPECT_TRUE(filters.empty()) << "no byte";
  append_signature_filter(filters, "7265 6");  // up to the first odd digit
  ASSERT_EQ(filters.size(), 1U);
  EXPECT_EQ(filters[0].signature, (std::vector<uint8_t>{0x72, 0x65}));
  EXPECT_FALSE(filter_accepts_path("/nowhere/at/all", filters, unreadable));
  EXPECT_TRUE(unreadable);
}

TEST(hive_aliases, stand_for_whole_paths_before_parts) {
  struct {
    const char *name, *files, *parts, *path, *shown;
  } const rows[] = {
      {"without regard to case", "C:\\Case\\SYSTEM|one", "", "c:\\case\\System", "one"},
      {"first of two pairs", "/a|one|/A|two", "", "/a", "one"},
      {"a hit ends it", "/x/y|/x/z", "/x|q", "/x/y", "/x/z"},
      {"part of parts", "", "/b|two|/a|one", "/a/b/c", "onetwo/c"},
      {"part as long as the path", "", "/mnt|disk", "/mnt", "/mnt"},
      {"ends of parts", "", "E:\\|\"Disk 1\"\\", "E:\\SYSTEM", "Disk 1\\SYSTEM"},
      {"lone part", "", "/mnt\\", "/mnt/SYSTEM", "*/SYSTEM"},
  };
  for (const auto& row : rows) {
    row_settings settings;
    settings.hive_location = row.path;
    EXPECT_TRUE(*row.files == 0 || add_file_aliases(settings, row.files)) << row.name;
    EXPECT_TRUE(*row.parts == 0 || add_path_aliases(settings, row.parts)) << row.name;
    EXPECT_EQ(row.shown, aliased_hive_location(settings)) << row.name;
  }
}

const std::string copy_prefix = R"(\\?\GLOBALROOT\Device\HarddiskVolumeShadowCopy)";

TEST(shadow_copy, a_number_or_a_pasted_path_names_the_device) {
  for (const std::string& value : {std::string("12"), copy_prefix + "12",
                                   copy_prefix + "12\\Windows\\x", "\"" + copy_prefix + "12\\"}) {
    EXPECT_EQ(shadow_copy_device(value), copy_prefix + "12") << value;
  }
  EXPECT_EQ(shadow_copy_device("3\\foo"), copy_prefix + "3\\foo");
}

TEST(shadow_copy, a_path_is_cut_behind_its_device) {
  const std::string identifier = R"(\\.\SnapId_aaaa\)" + std::string(31, 'a');
  for (const std::string& device :
       {copy_prefix + "7", copy_prefix,
        std::string(R"(\\?\globalroot\device\harddiskvolumeshadowcopy7)"), identifier,
        identifier + "b", std::string()}) {
    EXPECT_EQ(without_shadow_copy_device(device + "\\windows"), "\\windows") << device;
  }
  for (const std::string& whole : {copy_prefix + "7", copy_prefix, identifier,
                                   std::string(R"(\\?\C:\windows)"), std::string()}) {
    EXPECT_EQ(without_shadow_copy_device(whole), whole);
  }
}

TEST(path_variables, are_replaced_as_often_as_they_have_a_value) {
  setenv("SHIM_CASE", "c7", 1);
  setenv("SHIM_NESTED", "/mnt/%SHIM_CASE%", 1);
  setenv("SHIM_SELF", "%SHIM_SELF%+", 1);
  unsetenv("SHIM_NONE");
  unsetenv("Vss");
  const std::string in_limit(501, 'x');
  const std::pair<std::string, std::string> paths[] = {
      {"%SHIM_CASE%%SHIM_CASE%", "c7c7"},
      {"%SHIM_NESTED%/x", "/mnt/c7/x"},
      {"%SHIM_NONE%/%SHIM_CASE%", "%SHIM_NONE%/c7"},
      {"%SHIM_NONE%SHIM_CASE%", "%SHIM_NONE%SHIM_CASE%"},  // the second sign closes the first name
      {"%Vss%3\\a", copy_prefix + "3\\a"},
      {"100%", "100%"},
      {"%%SHIM_CASE%", "%%SHIM_CASE%"},
      {"%SHIM_SELF%", "%SHIM_SELF%" + std::string(64, '+')},
      {in_limit + "%SHIM_CASE%", in_limit + "c7"},
      {in_limit + "x%SHIM_CASE%", in_limit + "x%SHIM_CASE%"}};
  for (const auto& [path, expanded] : paths) EXPECT_EQ(expanded, expand_path_variables(path));
}

}  // namespace
