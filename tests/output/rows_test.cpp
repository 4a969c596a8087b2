// Cell rows and the two fixed records.

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "output/field_row.h"
#include "output/fixed_records.h"
#include "support/bytes.h"

namespace {

using namespace ovrik;

const uint64_t noon = test_support::filetime(2014, 3, 5, 12);
const std::string path = "C:\\a|b,c\r\n";

std::string row_under(const std::function<void(row_settings&)>& change) {
  row_settings settings;
  settings.columns = {{.width = 11, .text = "date"},
                      {.kind = cell_kind::time_header, .width = 13, .text = "time"},
                      {.kind = cell_kind::time_joined, .width = 24, .text = "both"},
                      {.width = 5, .text = "no"},
                      {.width = 10, .text = "flags"},
                      {.width = 4, .text = "size"},
                      {.width = 6, .text = "host"},
                      {.width = 12, .text = "path"}};
  change(settings);
  field_row row(settings);
  EXPECT_EQ(row_set_number(row, 0, noon, cell_kind::time_pair), 2U);
  EXPECT_EQ(row_set_number(row, 2, noon, cell_kind::time_joined), 1U);
  row_set_number(row, 3, 26, cell_kind::number32, field_cell::always_decimal);
  row_set_number(row, 4, 26, cell_kind::number32);
  row_set_number(row, 5, 0, cell_kind::number64, field_cell::blank_zero);
  row_set_text(row, 6, "{\"h\"");
  row_set_text(row, 7, path);
  row_set_text(row, 8, "beyond");
  std::ostringstream out;
  write_row(out, row, settings);
  EXPECT_FALSE(settings.emit_row_header);
  return out.str();
}

void csv(row_settings& settings) {
  settings.form_csv = settings.tight_csv = true;
  set_csv_separator(settings, ",");
}

TEST(rows, every_form_of_header_and_row) {
  EXPECT_EQ(row_under([](row_settings&) {}),
            "date        |  time          |  both                     | no    | flags      | size "
            "| host   | path        \n"
            "2014-03-05  |  12:00:00.000  |  2014-03-05 12:00:00.000  |    26 | 0x0000001a |      "
            "| {\"h\"   | C:\\a;b,c\r\n  \n");
  EXPECT_EQ(row_under(csv),
            "date, time, both,no,flags,size,host,path\n"
            "2014-03-05, 12:00:00.000, 2014-03-05 12:00:00.000,26,0x0000001a,,{\"h\","
            "C:\\a|b c[CRLF]\n");
  EXPECT_EQ(row_under([](row_settings& settings) {
              csv(settings);
              set_csv_separator(settings, "TAB");
              settings.quoted_csv = true;
              settings.pad_columns = settings.hex_numbers = settings.emit_row_header = false;
            }),
            "2014-03-05\t12:00:00.000\t2014-03-05 12:00:00.000\t26\t26\t\t{\"h\"\t"
            "\"C:\\a|b,c[CRLF]\"\n");
  EXPECT_EQ(row_under([](row_settings& settings) {
              for (field_cell& column : settings.columns) column.width = 3;
              settings.emit_row_header = false;
            }),
            "2014-03-05 |  12:00:00.000 |  2014-03-05 12:00:00.000 |  26 | 0x1a |     | {\"h\" | "
            "C:\\a;b,c\r\n\n");
  EXPECT_EQ(row_under([](row_settings& settings) {
              settings.form_multiline = settings.tight_csv = true;
              settings.pad_columns = false;
              set_csv_separator(settings, "");
            }),
            "date:  2014-03-05\ntime:  12:00:00.000\nboth:  2014-03-05 12:00:00.000\nno:    26\n"
            "flags: 0x0000001a\nsize:  \nhost:  {\"h\"\npath:  C:\\a|b,c\r\n\n\n");
}

TEST(rows, line_ends_are_named) {
  const std::pair<std::string, std::string> rows[] = {{"", ""},
                                                      {"a\rb\r", "a[CR]b[CR]"},
                                                      {"\n", "[LF]"},
                                                      {"\n\n", "[LF][LF]"},
                                                      {"a\r\n\r\nb", "a[CRLF][CRLF]b"},
                                                      {"a\n\rb", "a[LFCR]b"},
                                                      {"\r\r\n", "\r[CRLF]"},
                                                      {"a\rb\n", "a\rb[LF]"}};
  for (const auto& [text, escaped] : rows) {
    std::string changed = text;
    escape_line_ends(changed);
    EXPECT_EQ(changed, escaped);
  }
}

TEST(timeline, equal_times_share_a_row_and_rows_ascend) {
  const std::pair<std::array<uint64_t, time_slots>, std::vector<std::string>> rows[] = {
      {{0, 0, 0, 0}, {}},
      {{5, 0, 0, 0}, {"05.000,UTC,M...,Mod"}},
      {{5, 0, 5, 0}, {"05.000,UTC,M.C.,Mod; Reg"}},
      {{5, 0, 4, 0}, {"04.000,UTC,..C.,Reg", "05.000,UTC,M...,Mod"}},
      {{7, 6, 7, 6}, {"06.000,UTC,.A.B,Acc; Born", "07.000,UTC,M.C.,Mod; Reg"}},
      {{9, 9, 9, 9}, {"09.000,UTC,MACB,Mod; Acc; Reg; Born"}},
      {{0, 9, 32535216000, 0}, {"09.000,UTC,.A..,Acc"}}};  // the other time is in 3001
  for (const auto& [seconds, marks] : rows) {
    row_settings settings;
    csv(settings);
    settings.emit_row_header = false;
    timeline_record record(settings);
    record.seconds = seconds;
    record.labels = {"Mod", "Acc", "Reg", "Born"};
    record.short_text = record.desc = record.filename = record.notes = record.extra = path;
    std::ostringstream out;
    write_timeline_row(out, record, settings);
    std::string expected;
    for (const std::string& mark : marks) {
      const size_t type = mark.rfind(',');
      expected += "1970-01-01,00:00:" + mark.substr(0, type) + ",,," + mark.substr(type + 1) +
                  ",,,C:\\a|b c\r\n,C:\\a|b c[CRLF],2,C:\\a|b c\r\n,0x00000000,C:\\a|b c[CRLF], "
                  "(lorvane),C:\\a|b c[CRLF]\n";
    }
    EXPECT_EQ(out.str(), expected);
  }
}

TEST(fixed_records, header_comes_once) {
  row_settings settings;
  settings.pair_datetime = true;
  settings.hex_numbers = false;
  settings.program_name = "prog";
  settings.user_name = "user";
  settings.host_name = "host";
  settings.artifact_title = "title";
  timeline_record record(settings);
  record.seconds[born_slot] = 1;
  std::ostringstream timeline, body;
  for (int i = 0; i < 2; ++i) write_timeline_row(timeline, record, settings);
  const std::string row =
      " 1970-01-01 00:00:01.000 | UTC | ...B |  | title |  | user | host |  |  | 2 |  | 0 |  | "
      "prog (lorvane) | \n";
  EXPECT_EQ(timeline.str(),
            "date/time | timezone | MACB | source | sourcetype | type | user | host | short | desc "
            "| version | filename | inode | notes | format | extra\n" +
                row + row);

  settings.emit_row_header = true;
  set_csv_separator(settings, ",");
  const uint64_t modified = slot_seconds(noon + 9999999);
  const body_record file{.name = "a|b,c", .size = 5, .seconds = {modified, 2, 3, UINT64_MAX}};
  for (int i = 0; i < 2; ++i) write_body_row(body, file, settings);
  const std::string body_row = "0|a;b,c|0||0|0|5|2|1394020800|3|18446744073709551615\n";
  EXPECT_EQ(body.str(),
            "md5|name|inode|mode as string|uid|gid|size|access time|modify time|mft time|"
            "create time\n" +
                body_row + body_row);
  EXPECT_EQ(slot_seconds(0) + slot_seconds(noon | 1ULL << 63), 0U);
}

}  // namespace
