// What the output forms of the whole program do not show of cell rows and the fixed records.

#include <gtest/gtest.h>

#include <sstream>

#include "output/field_row.h"
#include "output/field_text.h"
#include "output/fixed_records.h"
#include "output/line_ends.h"
#include "support/bytes.h"

namespace {

using namespace ovrik;

const std::string path = "C:\\a|b,c\r\n";

TEST(rows, cells_under_narrow_columns_and_beyond_them) {
  const std::pair<bool, std::string> forms[] = {
      {false, "2014-03-05, 12:00:00.000,0x1a,   ,{\"h\", 2014-03-05 12:00:00.000\n"},
      {true, "2014-03-05, 12:00:00.000,0x0000001a,,{\"h\", 2014-03-05 12:00:00.000\n"}};
  for (const auto& [tight, expected] : forms) {
    row_settings settings;
    const std::vector<field_cell> columns = {
        {.width = 3, .text = "date"},
        {.kind = cell_kind::time_header, .width = 3, .text = "time"},
        {.width = 3, .text = "flags"},
        {.width = 3, .text = "size"},
        {.width = 3, .text = "host"},
        {.kind = cell_kind::time_joined, .width = 3, .text = "both"}};
    settings.tight_csv = tight;
    set_csv_separator(settings, ",");
    std::ostringstream out;
    row_writer writer(out, settings);
    writer.set_columns(columns);
    field_row row(writer);
    const uint64_t noon = test_support::filetime(2014, 3, 5, 12);
    EXPECT_EQ(row_set_number(row, 0, noon, cell_kind::time_pair), 2U);
    EXPECT_EQ(row_set_number(row, 2, 26, cell_kind::number32), 1U);
    row_set_number(row, 3, 0, cell_kind::number64, field_cell::blank_zero);
    row_set_text(row, 4, "{\"h\"", field_cell::quote);  // a text that brings its own quotes
    row_set_number(row, 5, noon, cell_kind::time_joined);
    row_set_text(row, 6, "beyond");
    row_set_number(row, 6, 1, cell_kind::number32);
    write_row(writer, row);
    EXPECT_FALSE(writer.needs_columns());
    EXPECT_EQ(out.str(), "date, time,flags,size,host, both\n" + expected);
  }
}

TEST(row_writer, headings_and_headers_wait_for_rows) {
  struct {
    row_form form;
    const char* once;       ///< in front of the first row of a section
    const char* new_value;  ///< in front of the first row of another value in it
    const char* again;      ///< in front of the first row of the next section
  } const rows[] = {{row_form::csv, "two\ncolumn\n", "", "three\ncolumn\n"},
                    {row_form::multiline, "two\n", "", "three\n"},
                    {row_form::bodyfile, "two\nheader\n", "", "three\n"},
                    {row_form::l2t, "header\n", "", ""}};
  for (const auto& row : rows) {
    row_settings settings;
    settings.form = row.form;
    settings.tight_csv = true;
    std::ostringstream out;
    row_writer writer(out, settings);
    const auto first_row = [&writer, &out] {
      out.str("");
      writer.write_heading();
      if (writer.needs_columns()) writer.set_columns({{.text = "column"}});
      if (writer.take_due_header()) out << "header\n";
      return out.str();
    };
    writer.begin_section("one");  // no row comes for it
    writer.begin_section("two");
    EXPECT_EQ(first_row(), row.once) << row.once;
    EXPECT_EQ(first_row(), row.new_value) << row.once;
    writer.begin_section("three");
    EXPECT_EQ(first_row(), row.again) << row.once;
  }
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

TEST(field_text, stays_one_field) {
  struct {
    const char* separator;
    const char* text;
    const char* plain;
    const char* quoted;
  } const rows[] = {{" | ", "a|b || c", "a;b ;; c", "\"a|b || c\""},
                    {",", "a\",\"b, c", "a\" \"b  c", "\"a\"\",\"\"b, c\""},
                    {" ; ", "a;b ", "a b ", "\"a;b \""},
                    {"::", "a:b::", "a b  ", "\"a:b::\""},
                    {" ", "a b", "a_b", "\"a b\""},
                    {"", "a b,", "a b,", "\"a b,\""},
                    {"\t", "a\tb", "a␉b", "\"a␉b\""},
                    {",", "a\tb", "a\tb", "\"a\tb\""},
                    {"[", "a[b\n", "a b LF]", "\"a[b[LF]\""},
                    {"␍", "a\nb\rc␍", "a[LF]b c ", "\"a[LF]b␍c␍\""},
                    {"¦", "Ä¦b", "Ä b", "\"Ä¦b\""},
                    {"|", "\x1B[0m\xC2\x9B|", "␛[0m�;", "\"␛[0m�|\""}};
  for (const auto& row : rows) {
    const field_text texts(row.separator);
    std::string plain = "=";
    std::string quoted = "=";
    texts.append(plain, row.text, line_ends_as::names);
    texts.append_quoted(quoted, row.text, line_ends_as::names);
    EXPECT_EQ(plain, std::string("=") + row.plain) << row.separator;
    EXPECT_EQ(quoted, std::string("=") + row.quoted) << row.separator;
  }
  std::string line;
  field_text(",").append(line, "a\r\nb", line_ends_as::pictures);
  EXPECT_EQ(line, "a␍␊b");
}

TEST(timeline, equal_times_share_a_row_and_rows_ascend) {
  const std::pair<std::array<uint64_t, time_slots>, std::vector<std::string>> rows[] = {
      {{0, 0, 0, 0}, {}},
      {{5, 0, 4, 0}, {"04.000 | UTC | ..C. | Reg", "05.000 | UTC | M... | Mod"}},
      {{7, 6, 7, 6}, {"06.000 | UTC | .A.B | Acc; Born", "07.000 | UTC | M.C. | Mod; Reg"}},
      {{9, 9, 9, 9}, {"09.000 | UTC | MACB | Mod; Acc; Reg; Born"}},
      {{0, 9, 32535216000, 0}, {"09.000 | UTC | .A.. | Acc"}}};  // the other time is in 3001
  for (const auto& [seconds, marks] : rows) {
    row_settings settings;
    settings.pair_datetime = true;
    settings.hex_numbers = false;
    timeline_record record(settings);
    record.seconds = seconds;
    record.labels = {"Mod", "Acc", "Reg", "Born"};
    record.short_text = record.desc = record.filename = record.notes = record.extra = path;
    std::ostringstream out;
    row_writer writer(out, settings);
    writer.take_due_header();
    write_timeline_row(writer, record);
    std::string expected;
    for (const std::string& mark : marks) {
      const size_t type = mark.rfind("| ");
      expected +=
          " 1970-01-01 00:00:" + mark.substr(0, type) + "|  |  " + mark.substr(type) +
          " |  |  | C:\\a;b,c␍␊ | C:\\a;b,c[CRLF] | 2 | C:\\a;b,c␍␊ | 0 | C:\\a;b,c[CRLF] | "
          " (lorvane) | C:\\a;b,c[CRLF]\n";
    }
    EXPECT_EQ(out.str(), expected);
  }
  row_settings settings;
  settings.pair_datetime = true;
  std::ostringstream header;
  row_writer writer(header, settings);
  write_timeline_row(writer, timeline_record(settings));
  write_timeline_row(writer, timeline_record(settings));
  EXPECT_EQ(header.str(),
            "date/time | timezone | MACB | source | sourcetype | type | user | host | short | desc "
            "| version | filename | inode | notes | format | extra\n");
  EXPECT_EQ(slot_seconds(0) + slot_seconds(1ULL << 63), 0U);
}

TEST(body, shows_every_time) {
  const row_settings settings;
  std::ostringstream out;
  row_writer writer(out, settings);
  writer.take_due_header();
  write_body_row(writer, {.name = "a|b,c", .size = 5, .seconds = {1, 2, 3, UINT64_MAX}});
  EXPECT_EQ(out.str(), "0|a;b,c|0||0|0|5|2|1|3|18446744073709551615\n");
}

}  // namespace
