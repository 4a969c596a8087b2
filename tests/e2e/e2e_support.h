// What the end-to-end tests of single sources share: composed evidence and a folder to run in.

#pragma once

#include <gtest/gtest.h>

#include <string>

#include "e2e/tested_program.h"
#include "support/cache_builder.h"
#include "support/outside.h"
#include "support/system_hive.h"
#include "support/temp_dir.h"

namespace test_support {

constexpr int failure = 255;  ///< -1 as the shell sees it

/// What goes out before a message: it wipes the line that progress is shown in.
inline const std::string wiped = "\x1b[2K\r" + std::string(27, ' ') + "\r";

/// A Windows 7 cache with the characters that the output forms treat in ways of their own.
inline bytes seven_cache() {
  cache_builder cache(7);
  cache.entry({.path = u"\\??\\C:\\Old, new\\a|b.exe",
               .modified = filetime(2014, 3, 5, 13, 7, 9, 1'234'567),
               .flags1 = 0x0A});
  cache.entry({.path = u"C:\\Ж\nc.exe", .modified = 0, .flags1 = 1, .flags2 = 0x12});
  return cache.bytes();
}

/// A Windows XP cache: the first program is missing in the list of last use and the second one's
/// times differ by less than a second.
inline bytes xp_cache() {
  cache_builder cache(1);
  cache.entry({.path = u"C:\\p.exe",
               .modified = filetime(2005, 6, 7, 8, 9, 10),
               .update = filetime(2004, 1, 2, 3, 4, 5)});
  cache.entry({.path = u"C:\\q|.exe",
               .modified = filetime(2006, 7, 8, 9, 10, 11, 5'000'000),
               .update = filetime(2006, 7, 8, 9, 10, 11),
               .file_size = 0});
  return cache.order({1}).bytes();
}

/// The first cache in the current control set, the second one under the old key of set `xp_set`.
inline bytes two_cache_hive(uint32_t xp_set) {
  const uint64_t last_write = filetime(2023, 3, 4, 19, 52, 7, 3'391'250);
  return system_hive({{.number = 1, .cache = seven_cache(), .last_write = last_write},
                      {.number = xp_set,
                       .cache = xp_cache(),
                       .old_key = true,
                       .last_write = filetime(2010, 1, 1)}},
                     1)
      .bytes();
}

/// What stands behind the start-up header, which ends with the first empty line.
inline std::string body_of(const std::string& out) {
  const size_t end = out.find("\n\n");
  return end == std::string::npos ? "no header: " + out : out.substr(end + 2);
}

/// What stands behind each `label` in the text, up to the end of its line.
inline words behind(const std::string& label, const std::string& text) {
  words found;
  for (size_t at = 0; (at = text.find(label, at)) != std::string::npos;) {
    at += label.size();
    found.push_back(text.substr(at, text.find('\n', at) - at));
  }
  return found;
}

/// What is said of an output that the run must not write to.
inline std::string spared(const std::string& path, const std::string& reason) {
  return "prob opening file " + path + " for output, aborting\n" + path +
         " is left as it is: " + reason + "\n";
}

inline const std::string is_source = "it is, or lies behind, a source of this run";

/// How a run ends: what it says, what it gives behind the header, its exit value.
struct ending {
  shell_words arguments;
  std::string err, body = {};
  int exit_status = failure;
};

/// Runs the program in a folder with a hive of two caches, "sets.hiv".
class single_source : public testing::Test {
 protected:
  single_source() { put_file("sets.hiv", two_cache_hive(2)); }
  void put_file(const std::string& name, const bytes& content) const {
    write_file(folder.path(name), content);
  }
  bytes content(const std::string& name) const { return read_file(folder.path(name)); }
  std::string text(const std::string& name) const { return as_text(content(name)); }

  run_result run(const shell_words& arguments, run_options options = {}) const {
    options.folder = folder.path();
    return run_ovrik(arguments.line + " -quiet", options);
  }
  /// What a line of the shell says, which must not fail.
  std::string shell(const std::string& line, const std::string& input = "") const {
    const run_result result =
        run_program("sh", {"-ec", line}, {.input = input, .folder = folder.path()});
    EXPECT_EQ(result.exit_status, 0) << line << result.err;
    return result.out;
  }
  /// What changes when one of the files does.
  std::string state_of(const std::string& files) const {
    return shell("sha256sum " + files + "; stat -c '%s %y' " + files);
  }
  /// Each of the runs ends as it should.
  void expect(const std::vector<ending>& endings, const run_options& options = {}) const {
    for (const ending& row : endings) {
      SCOPED_TRACE(row.arguments.line);
      const run_result result = run(row.arguments, options);
      EXPECT_EQ(row.err, result.err);
      EXPECT_EQ(row.body, body_of(result.out));
      EXPECT_EQ(row.exit_status, result.exit_status);
    }
  }
  std::string body(const shell_words& arguments, const std::string& input = "") const {
    return body_of(run(arguments, {.input = input}).out);
  }
  /// What stands behind the lines that name the source.
  std::string rows(const shell_words& arguments) const {
    const std::string out = run(arguments.line + " -csv").out;
    const size_t at = out.find("\nreg date");
    return at == std::string::npos ? "no rows: " + out : out.substr(at);
  }

  const temp_dir folder;
};

}  // namespace test_support
