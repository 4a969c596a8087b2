#include "shim/shim_rows.h"

#include <gtest/gtest.h>

#include <sstream>

#include "shim/shim_columns.h"
#include "shim/shim_parse.h"
#include "support/cache_builder.h"

namespace {

using namespace ovrik;
using namespace test_support;

shim_settings tight() {
  shim_settings settings;
  settings.tight_csv = true;
  settings.pad_columns = false;
  set_csv_separator(settings, ",");
  return settings;
}

std::string output(const bytes& cache, shim_settings settings, uint32_t slack = 0) {
  shim_cache_results results;
  parse_shim_cache(results, byte_view(cache), slack, settings.raw_mode);
  std::ostringstream out;
  EXPECT_EQ(output_shim_cache(out, results, settings, byte_view(cache)), !results.empty());
  return out.str();
}

cache_entry sample() {
  const uint64_t noon = filetime(2014, 3, 5, 12);
  return {.path = u"C:\\a.exe", .modified = noon, .update = noon, .flags1 = 2};
}

TEST(shim_rows, each_layout_has_its_columns) {
  const std::string time = "2014-03-05,12:00:00.000,";
  const std::string size = "file mod,time-UTC,entry,file sz,Path/file\n" + time + "0,0x00012345,";
  const std::string head =
      "file mod,time-UTC,entry,flags1,flags2,meaning (experimental),Path/file\n";
  const std::string flags = head + time + "0,0x00000002,0x00000100,legacy-gui; exec,";
  const std::string plain = "file mod,time-UTC,entry,Path/file\n";
  const std::string xp = "file mod,time-UTC,xpupdate,time-UTC,entry,order,file sz,Path/file\n" +
                         time + time + "0,18446744073709551615,0x00012345,";
  const std::pair<int, std::string> rows[] = {{1, xp},
                                              {2, size},
                                              {3, size},
                                              {4, flags},
                                              {5, flags},
                                              {6, flags},
                                              {7, flags},
                                              {9, head + ",,0,0x00000000,0x00000000,legacy-gui,"},
                                              {10, flags},
                                              {12, plain + ",,0,"},
                                              {13, plain + time + "0,"},
                                              {14, plain + time + "0,"}};
  for (const auto& [layout, text] : rows) {
    const bytes cache = cache_builder(layout).entry(sample()).order({5}).bytes();
    EXPECT_EQ(output(cache, tight()), text + "C:\\a.exe\n") << layout;
  }
}

TEST(shim_rows, columns_that_options_add) {
  cache_builder cache(13);
  bytes block = cache.entry(sample()).bytes();
  shim_settings settings;
  settings.pair_datetime = true;
  settings.reg_update_time = filetime(2020, 1, 2);
  settings.section_text = "heading";
  EXPECT_EQ(
      output(block, settings),
      "heading\n"
      " reg date [UTC]          | file modify [UTC]       | entry | Path/file           \n"
      " 2020-01-02 00:00:00.000 |  2014-03-05 12:00:00.000 |     0 | C:\\a.exe            \n");
  EXPECT_EQ(output({}, settings), "");  // no heading without rows

  block = cache.entry(sample()).bytes();
  settings = tight();
  settings.reg_update_time = filetime(2020, 1, 2);
  settings.inc_slack = true;
  settings.host_name = "PC-1";
  const std::string times = "2020-01-02,00:00:00.000,2014-03-05,12:00:00.000,";
  EXPECT_EQ(output(block, settings, static_cast<uint32_t>(block.size() - cache.entry_at(1))),
            "reg date,reg-UTC,file mod,time-UTC,entry,slack,hostname,Path/file\n" + times +
                "0,,PC-1,C:\\a.exe\n" + times + "1,*,PC-1,C:\\a.exe\n");
  settings.raw_mode = true;
  const std::string rule = "--------------------------------------------\n";
  EXPECT_EQ(output(block, settings),
            rule + "Header information\n\n" + rule + "entry: 0   \n\n" + rule + "entry: 1   \n\n");
}

TEST(shim_rows, order_is_by_number_text_or_by_name) {
  shim_cache_results results;
  const std::pair<const char*, uint32_t> entries[] = {
      {"invalid", 2}, {"b", 7}, {"b", 8}, {"c", 99999}, {"a", 100000}};
  for (const auto& [path, number] : entries) {
    shim_cache_entry entry;
    entry.layout = shim_layout::win10;
    entry.path_raw = path;
    entry.entry_number = number;
    entry.valid = number != 2;
    results.push_back(entry);
  }
  for (const bool by_name : {false, true}) {
    shim_settings settings = tight();
    settings.emit_row_header = false;
    settings.sort_by_name = by_name;
    settings.columns = shim_columns(shim_layout::win10, settings);
    std::ostringstream out;
    ASSERT_TRUE(output_shim_cache(out, results, settings, byte_view()));
    EXPECT_EQ(out.str(), by_name ? ",,100000,a\n,,7,b\n,,8,b\n,,99999,c\n"
                                 : ",,7,b\n,,8,b\n,,100000,a\n,,99999,c\n");
  }
}

TEST(shim_rows, words_of_the_flags) {
  std::string words;
  for (const uint32_t flags : {0U, 1U, 2U, 3U, 8U, 9U, 0xAU, 0xFFFFFFFFU, 0xFFFFFFF4U}) {
    words += shim_flags_meaning(flags) + '\n';
  }
  EXPECT_EQ(words,
            "legacy-gui\n\nlegacy-gui; exec\nexec\nlegacy-gui; admin\nadmin\n"
            "legacy-gui; exec; admin\nexec; admin\nlegacy-gui\n");
}

TEST(shim_rows, timeline_and_body_rows) {
  struct row {
    int layout;
    const char* order;
    const char* timeline[3];  ///< MACB, type and notes
    const char* body;
  };
  const row rows[] = {
      {1,
       " (sorted# 0)",
       {"M.C.", "File Modified; RegKey Updated", "File size: 0x00012345"},
       "74565|0|1394020800|1394020800|0\n"},
      {7,
       "",
       {"M...", "File Modified", "Flags1: 0x00000002; Flags2: 0x00000100; [legacy-gui; exec]"},
       "0|0|1394020800|0|0\n"},
      {13, "", {"M...", "File Modified", ""}, "0|0|1394020800|0|0\n"}};
  for (const row& row : rows) {
    shim_settings settings = tight();
    settings.inc_slack = settings.form_l2t = true;
    settings.emit_row_header = false;
    settings.artifact_title = "Title";
    settings.hive_location = "hive";
    const bytes cache = cache_builder(row.layout).entry(sample()).bytes();
    const std::string name = std::string("C:\\a.exe") + row.order;
    EXPECT_EQ(output(cache, settings, 1000000),
              std::string("2014-03-05,12:00:00.000,UTC,") + row.timeline[0] + ",REG,Title," +
                  row.timeline[1] + ",,,C:\\a.exe," + name + ",2,hive,0x00000000,Slack entry; " +
                  row.timeline[2] + ", (lorvane),entry# 0\n");
    settings.form_bodyfile = true;
    EXPECT_EQ(output(cache, settings), "0|entry# 0; " + name + " (Title)|0||0|0|" + row.body);
  }
  shim_settings settings = tight();
  settings.form_l2t = true;
  settings.hex_numbers = settings.emit_row_header = false;
  EXPECT_NE(output(cache_builder(2).entry(sample()).bytes(), settings).find(",0,File size:74565,"),
            std::string::npos);
  EXPECT_EQ(output(cache_builder(9).entry(sample()).bytes(), settings), "");  // no time, no row
  cache_entry plain = sample();
  plain.flags1 = 1;  // no word: no brackets
  EXPECT_NE(output(cache_builder(10).entry(plain).bytes(), settings).find("0x00000100, (lor"),
            std::string::npos);
}

}  // namespace
