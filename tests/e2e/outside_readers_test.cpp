// What programs of others make of the results: body files in mactime, CSV in SQLite, lists through
// GNU parallel. Real hives take part where they lie beside the project.
#include <gtest/gtest.h>

#include <cstdlib>

#include "e2e/e2e_support.h"

namespace test_support {
namespace {

/// Skips a test whose tool is missing, which must not happen where everything was installed.
#define NEED_TOOL(tool)                                                \
  if (run_program("/usr/bin/which", {tool}).exit_status != 0) {        \
    if (std::getenv("CI") != nullptr) FAIL() << tool << " is missing"; \
    GTEST_SKIP() << tool << " is missing";                             \
  }

/// Folder with hives to read: the sample, and real ones where they are there.
class outside_readers : public testing::Test {
 protected:
  void SetUp() override {
    const std::string source = OVRIK_SOURCE_DIR;
    for (int copy = 0; copy < 3; ++copy) add("sample", read_file(source + "/samples/SYSTEM"));
    for (const std::string name : {"win7.SYSTEM", "win10-1709.SYSTEM"}) {
      const std::string packed = source + "/../shared/corpus/" + name + ".xz";
      if (!std::filesystem::exists(packed)) continue;
      run_program("/usr/bin/xz", {"-dc", packed}, {.out_path = m_folder.path("unpacked")});
      const bytes hive = read_file(m_folder.path("unpacked"));
      for (int copy = 0; copy < 2; ++copy) add(name, hive);
    }
  }

  void add(const std::string& name, const bytes& hive) {
    const std::string file = name + std::to_string(m_count++);
    write_file(m_folder.path(file), hive);
    m_list += file + "\n";
  }

  std::string results(const std::string& form, const std::string& list) {
    return run_ovrik({"-pipe", "-quiet", form}, {.input = list, .folder = m_folder.path()}).out;
  }

  temp_dir m_folder;
  std::string m_list;
  int m_count = 0;
};

TEST_F(outside_readers, mactime_takes_every_row_of_a_body_file) {
  NEED_TOOL("mactime");
  const std::string body = results("-bodyfile", m_list);
  write_file(m_folder.path("body"), body);
  const run_result run = run_program("/usr/bin/mactime", {"-b", "body", "-d", "-z", "UTC"},
                                     {.folder = m_folder.path()});
  EXPECT_EQ(run.exit_status, 0);
  EXPECT_EQ(run.err, "");
  size_t rows = 0;
  for (size_t at = body.find("\n0|"); at != std::string::npos; at = body.find("\n0|", at + 1)) {
    const std::string row = body.substr(at + 1, body.find('\n', at + 1) - at - 1);
    if (row.ends_with("|0|0|0|0")) continue;  // mactime lists no row without a time
    const std::string name = row.substr(2, row.find('|', 2) - 2);
    EXPECT_NE(run.out.find(name), std::string::npos) << name;
    ++rows;
  }
  EXPECT_GE(rows, 39U);
}

TEST_F(outside_readers, sqlite_finds_the_columns_of_the_header_in_every_csv_row) {
  NEED_TOOL("sqlite3");
  // Sections of one layout have one header; each hive comes twice or more.
  for (const std::string kind : {"sample", "win7", "win10"}) {
    std::string list;
    for (size_t at = 0; at < m_list.size(); at = m_list.find('\n', at) + 1) {
      const std::string name = m_list.substr(at, m_list.find('\n', at) - at);
      if (name.starts_with(kind)) list += name + "\n";
    }
    if (list.empty()) continue;
    std::string table;
    size_t rows = 0;
    const std::string body = body_of(results("-csv", list));
    for (size_t at = 0; at < body.size();) {
      const size_t end = body.find('\n', at);
      const std::string line = body.substr(at, end - at + 1);
      at = end + 1;
      const bool header = line.starts_with("reg date,");
      const bool row = line[0] == '1' || line[0] == '2';
      if (row || (header && table.empty())) table += line;
      rows += row ? 1 : 0;
    }
    write_file(m_folder.path("table.csv"), table);
    const run_result run =
        run_program("/usr/bin/sqlite3",
                    {":memory:", ".import --csv table.csv t",
                     "select count(*), count(nullif(\"Path/file\", '')) from t;"},
                    {.folder = m_folder.path()});
    EXPECT_EQ(run.err, "") << kind;
    EXPECT_EQ(run.out, std::to_string(rows) + "|" + std::to_string(rows) + "\n") << kind;
    EXPECT_GE(rows, 26U) << kind;
  }
}

TEST_F(outside_readers, gnu_parallel_and_a_single_run_give_the_same_rows) {
  NEED_TOOL("parallel");
  std::string program;
  for (const std::string& word : ovrik_command()) program += word + " ";
  for (const std::string form : {"-csv", "-csvl2t", "-bodyfile"}) {
    const run_result jobs = run_program(
        "/usr/bin/parallel",
        {"--pipe", "-N", "2", "--keep-order", "--jobs", "2", program + "-pipe -quiet " + form},
        {.input = m_list, .folder = m_folder.path()});
    const run_result joined =
        run_program(OVRIK_SOURCE_DIR "/scripts/join-results", {}, {.input = jobs.out});
    EXPECT_EQ(body_of(joined.out), body_of(results(form, m_list))) << form;
  }
}

}  // namespace
}  // namespace test_support
