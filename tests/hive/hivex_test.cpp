// An outside reader and writer of hives agrees about the bytes of values, in composed hives and in
// those of real machines.

#include "hive/control_sets.h"
#include "hive/hive_root.h"
#include "opened_hive.h"
#include "support/outside.h"

namespace ovrik {
namespace {

using namespace test_support;

class hivex : public testing::Test {
 protected:
  void SetUp() override { need_tools("hivexget hivexsh"); }
};

/// Compares a value of the hive file with what hivexget says.
void expect_same(const std::string& path, const std::string& key, const std::string& value) {
  SCOPED_TRACE(key + ": " + value);
  const run_result got = run_program("hivexget", {path, key, value});
  ASSERT_EQ(got.exit_status, 0) << got.err;
  const std::vector<hit> hits = query(hive_file(path).hive, key + "\\" + value);
  ASSERT_EQ(hits.size(), 1u);
  EXPECT_TRUE(as_text(hits[0].data) == got.out);
}

TEST_F(hivex, agrees_on_every_form_of_list_and_data) {
  for (const list_form form : {list_form::lh, list_form::lf, list_form::li, list_form::ri_of_lh,
                               list_form::ri_of_lf, list_form::ri_of_li}) {
    hive_builder built;
    built.root.form = form;
    for (const unsigned size : {0u, 1u, 4u, 5u, 16344u, 16352u, 32688u, 50000u}) {
      const std::string name = std::to_string(size);
      bytes data(size);
      for (unsigned i = 0; i < size; ++i) data[i] = static_cast<uint8_t>(i * 7 + i / 256);
      built.root.at("key" + name).values = {{.name = "other"}, {.name = name, .data = data}};
    }
    const opened_hive opened(built.bytes());
    for (const hive_key& key : built.root.subkeys) {
      expect_same(opened.folder.path("hive"), key.name, key.values[1].name);
    }
  }
}

TEST_F(hivex, agrees_on_a_hive_that_it_has_edited) {
  const opened_hive opened(system_hive_with(bytes(30000, 'x')).bytes());
  const std::string path = opened.folder.path("hive");
  const run_result edit = run_program(
      "hivexsh", {"-w", path},
      {.input = "cd ControlSet001\nadd New\ncd New\nsetval 2\nLong\nhex:3:01,02,03,04,05,06\n"
                "Short\nhex:3:07,08\ncommit\nquit\n"});
  ASSERT_EQ(edit.exit_status, 0) << edit.err;
  EXPECT_EQ(queried(read_file(path), "CurrentControlSet\\new"), "\1\2\3\4\5\6 \7\10 ");
  expect_same(path, "ControlSet001\\New", "Long");
  expect_same(path, cache_key_path(1), "AppCompatCache");
}

TEST_F(hivex, agrees_on_the_caches_of_real_machines) {
  for (const char* name : {"win7.SYSTEM.xz", "win10-1709.SYSTEM.xz"}) {
    const temp_dir folder;
    const std::string path = folder.path("hive");
    if (!fetch_real(name, path)) GTEST_SKIP() << "no real hives";
    const hive_file opened(path);
    read_allowance allowance(opened.hive.size());
    std::vector<reg_key> sets;
    ASSERT_TRUE(list_control_sets(opened.hive, allowance, sets));
    for (const reg_key& set : sets) {
      expect_same(path, set.name.text() + "\\Control\\Session Manager\\AppCompatCache",
                  "AppCompatCache");
    }
  }
}

TEST(real_hive, of_another_kind_tells_its_name) {
  const temp_dir folder;
  if (!fetch_real("SAM.xz", folder.path("hive"))) GTEST_SKIP() << "no real hives";
  uint32_t root = 0;
  std::string name;
  EXPECT_TRUE(find_root(hive_file(folder.path("hive")).hive, root, name));
  EXPECT_EQ(name, "SAM");
}

}  // namespace
}  // namespace ovrik
