// What programs of others make of the results: body files in mactime, CSV in SQLite, lists in GNU
// parallel. Real hives take part where they lie beside the project.
#include "e2e/e2e_support.h"

namespace test_support {
namespace {

/// Folder with hives to read: the sample, and real ones where they are there.
class outside_readers : public single_source {
 protected:
  void SetUp() override {
    need_tools("mactime sqlite3 parallel");
    for (const std::string name : {"win7.SYSTEM", "win10-1709.SYSTEM"}) {
      if (fetch_real(name + ".xz", folder.path(name))) hives.push_back(name);
    }
  }

  std::string list() const {
    std::string lines;
    for (const std::string& hive : hives) lines += hive + "\n";
    return lines;
  }

  words hives = {OVRIK_SOURCE_DIR "/samples/SYSTEM"};
};

TEST_F(outside_readers, mactime_takes_every_row_of_a_body_file) {
  const std::string body = run("-pipe -bodyfile", {.input = list()}).out;
  put_file("body", as_bytes(body));
  const std::string timeline = shell("mactime -b body -d -z UTC 2>errors; test ! -s errors");
  size_t rows = 0;
  for (const std::string& row : behind("\n0|", body)) {
    if (row.ends_with("|0|0|0|0")) continue;  // mactime lists no row without a time
    const std::string name = row.substr(0, row.find('|'));
    EXPECT_NE(timeline.find(name), std::string::npos) << name;
    ++rows;
  }
  EXPECT_GE(rows, 13U);
}

TEST_F(outside_readers, sqlite_finds_the_columns_of_the_header_in_every_csv_row) {
  // Sections of one layout have one header.
  for (const std::string& hive : hives) {
    const std::string body = "\n" + run("-pipe -csv", {.input = hive + "\n" + hive + "\n"}).out;
    std::string table = "reg date," + behind("\nreg date,", body).at(0);
    const words rows = behind("\n2", body);
    for (const std::string& row : rows) table += "\n2" + row;
    put_file("table.csv", as_bytes(table));
    const std::string counted = shell(
        "sqlite3 :memory: '.import --csv table.csv t' "
        "'select count(*), count(nullif(length(\"Path/file\"), 0)) from t;' 2>&1");
    const std::string count = std::to_string(rows.size());
    EXPECT_EQ(counted, count + "|" + count + "\n") << hive;
    EXPECT_GE(rows.size(), 26U) << hive;
  }
}

TEST_F(outside_readers, parallel_runs_and_a_single_one_give_the_same_rows) {
  for (const std::string form : {"-csv", "-csvl2t", "-bodyfile"}) {
    const std::string options = " -pipe -quiet " + form, whole = list() + list();
    const std::string jobs = shell("parallel --pipe -N 2 --keep-order --jobs 2" +
                                       shell_words{start_of_program() + options}.line +
                                       " | " OVRIK_SOURCE_DIR "/scripts/join-results",
                                   whole);
    EXPECT_EQ(body_of(jobs), body(form + " -pipe", whole)) << form;
  }
}

}  // namespace
}  // namespace test_support
