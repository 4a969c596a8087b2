// Which files a run must not write to, told from its options and from what lies in a folder.
#include "driver/options/evidence_guard.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/text.h"
#include "driver/options/parse_options.h"
#include "support/bytes.h"
#include "support/temp_dir.h"

namespace {

using namespace ovrik;
using namespace test_support;
namespace fs = std::filesystem;

TEST(evidence_guard, spares_what_is_not_the_runs_own) {
  const temp_dir dir;
  const auto at = [&dir](const std::string& name) { return dir.path(name); };
  for (const char* folder : {"tree/deep/er", "aside", "linked"}) fs::create_directories(at(folder));
  for (const char* name : {"a", "b", "r", "tab", "tree/x", "tree/deep/er/y", "aside/hard",
                           "aside/soft", "linked/z", "aside/w"}) {
    write_file(at(name), as_bytes("text"));
  }
  write_file(at("hive"), as_bytes("regf"));
  write_file(at("disk"), as_bytes("KDMV"));
  fs::create_hard_link(at("aside/hard"), at("tree/hard"));
  fs::create_symlink("../aside/soft", at("tree/soft"));
  fs::create_symlink("../linked", at("tree/linked"));
  fs::create_symlink("tree", at("other_name"));
  fs::create_symlink("a", at("soft_a"));
  fs::create_hard_link(at("a"), at("hard_a"));

  const std::string source = "source of this run", unread = "no option took",
                    folder = "folder of -enumdir", bytes = "begins like evidence";
  const struct {
    std::string line, output, reason;  // "@" stands for the folder
  } rows[] = {
      {"-hive @a", "a", source},
      {"-hive @a", "soft_a", source},
      {"-hive @a", "hard_a", source},
      {"-hive @hard_a", "./a/", source},
      {"-extract @a", "a", source},
      {"-image @a", "a", source},
      {"-vmdk @b|@a", "a", source},
      {"-vmdk @b -vmdk @a", "a", source},
      {"-binary @a", "a", source},
      {"-binary @a -memfile @b", "a", source},
      {"-memfile @a -hive @b", "a", source},
      {"-hive @a -image @b", "b", unread},
      {"-hive @a -hive @b", "b", unread},
      {"-hvie @a", "a", unread},
      {"-hvie \"@b\";@a", "a", unread},
      {"-pipe_binary -hive @a", "a", unread},
      {"-cmd_start_time x -hive @a", "a", unread},
      {"-enumdir @tree", "tree/x", folder},
      {"-enumdir @tree", "tree/deep/er/y", folder},
      {"-enumdir @tree", "other_name/x", folder},
      {"-enumdir @other_name -filter none", "tree/x", folder},
      {"-enumdir @tree", "aside/hard", folder},
      {"-enumdir @tree", "aside/soft", folder},
      {"-enumdir @tree -num_subdirs 1", "linked/z", folder},
      {"-diags x -sqlite s -enumdir @tree", "tree/x", folder},
      {"-pipe", "hive", bytes},
      {"-pipe", "disk", bytes},
      {"-hive @a", "b", ""},
      {"-hive @a -out @r -outfile @r", "r", ""},
      {"-csv_separator @tab -hive @a", "tab", ""},
      {"-filter @a", "a", ""},
      {"-enumdir @tree", "tree/new", ""},
      {"-enumdir @tree", "aside/w", ""},
      {"-enumdir @tree -hive @a", "hard_b", ""},
  };
  for (const auto& row : rows) {
    std::string line = "ovrik " + row.line;
    for (size_t at_sign = 0; (at_sign = line.find('@')) != std::string::npos;) {
      line.replace(at_sign, 1, dir.path() + "/");
    }
    const std::string reason =
        reason_to_spare(at(row.output), parse_options(split(line, ' ')).options);
    EXPECT_NE(reason.find(row.reason), std::string::npos) << row.line << " " << row.output;
    EXPECT_EQ(reason.empty(), row.reason.empty()) << row.line << " " << row.output << reason;
  }
}

}  // namespace
