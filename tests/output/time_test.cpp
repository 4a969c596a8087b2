// Times to text and typed dates back to times.

#include <gtest/gtest.h>

#include "output/date_text.h"
#include "output/lv_time.h"
#include "support/bytes.h"

namespace {

using namespace ovrik;
using namespace std::string_literals;
using test_support::filetime;

constexpr uint64_t second = 10000000;
constexpr uint64_t day = 86400 * second;
constexpr uint64_t epoch = 0x019DB1DED53E8000;
const uint64_t sample = filetime(2014, 3, 5, 13, 7, 9, 987654);

std::string text_of(uint64_t time, const date_time_writer& writer = {}) {
  time_value value;
  EXPECT_EQ(decode_filetime(value, time), value.valid);
  std::string date = "old", clock = "old";
  format_date_time(date, clock, value, writer);
  return value.valid ? date + " " + clock : date + clock;
}

TEST(lv_time, validity_and_calendar_edges) {
  const std::pair<uint64_t, const char*> rows[] = {
      {0, ""},
      {filetime(1900, 1, 1) - 1, ""},
      {filetime(1900, 1, 1), "1900-01-01 00:00:00.000"},
      {filetime(1900, 2, 28) + day, "1900-03-01 00:00:00.000"},
      {filetime(2000, 2, 28) + day, "2000-02-29 00:00:00.000"},
      {filetime(2004, 12, 31) + day - 1, "2004-12-31 23:59:59.999"},
      {epoch - 1, "1969-12-31 23:59:59.999"},
      {epoch + second - 1, ""},
      {epoch + second, "1970-01-01 00:00:01.000"},
      {filetime(3001, 1, 1) - 1, "3000-12-31 23:59:59.999"},
      {filetime(3001, 1, 1), ""},
      {sample | 1ULL << 63, ""}};
  for (const auto& [time, text] : rows) EXPECT_EQ(text_of(time), text) << time;
  time_value value;
  EXPECT_FALSE(decode_time(value, 0, time_encoding::unix_seconds));
  EXPECT_TRUE(decode_time(value, 1, time_encoding::unix_seconds));
  EXPECT_EQ(value.filetime, epoch + second);
}

TEST(lv_time, formats_print_in_their_order) {
  struct row {
    const char *date, *time;
    std::string text;
  };
  const row rows[] = {
      {"yyyy-mm-dd", "hh:mm:ss.xxx", "2014-03-05 13:07:09.098"},
      {"mm/dd/yy", "hh:mm:ss", "03/05/2014 13:07:09"},
      {"dd mm yyyy", "hh", "05 03 2014 13:07:09"},
      {"dd/mmm/yyyy", "", "05/Mar/2014 13:07:09"},
      {"mm-dd/yyyy", "", "03/05/2014 13:07:09"},  // "/" is tried before "-"
      {"yyyy-mmm-dd", "", " 13:07:09"},
      {"mm.dd.yyyy", "", "03\0"s + "05\0"s + "2014 13:07:09"},
      {"", "hh:mm:ss.xxxxxx", " 13:07:09.098765"},  // cut, not rounded
      {"", "hh:mm:ss.xxxxxxx", " 13:07:09.0987654"},
      {"", "hh:mm:ss.xx", "2014-03-05 13:07:09.098"},  // nothing set: the default look
      {"yyyy-mm-dd", "ss.xxxxxxxxxxxx", "2014-03-05 13:07:09.098765400"}};
  for (const row& row : rows) {
    date_time_writer writer;
    EXPECT_TRUE(compile_date_time(writer, row.date, row.time, false)) << row.date;
    EXPECT_EQ(text_of(sample, writer), row.text);
  }
  for (const char* bad :
       {"yyyy-dd", "mm-dd", "yyyy-mm", "yyyy-dd-mm", "dd-yyyy-mm", "mm-yyyy-dd"}) {
    date_time_writer writer;
    EXPECT_FALSE(compile_date_time(writer, bad, "", false)) << bad;
  }
}

TEST(date_text, reads_typed_dates) {
  struct row {
    std::string date, time;
    const char* order;
    uint64_t found;  ///< 0: refused
  };
  const row rows[] = {
      {"2014-03-05", "13:07:09.1235", "YMD", filetime(2014, 3, 5, 13, 7, 9, 1240000)},
      {"2014-03-05", " 1:07PM ", "YMD", filetime(2014, 3, 5, 13, 7)},
      {"2014-03-05", "1:07:09 pm", "YMD", filetime(2014, 3, 5, 13, 7, 9)},
      {"03-05-30", "1:07am", "MDY", filetime(2030, 3, 5, 1, 7)},
      {"05-Mar-31", "", "DMY", filetime(1931, 3, 5)},
      {"2000-02-29", "", "YMD", filetime(2000, 2, 29)},
      {"9999-12-31", "13:" + std::string(30, '0') + "7", "YMD", filetime(9999, 12, 31, 13, 7)},
      {"9999-12-31", "13:" + std::string(31, '0') + "7", "YMD", 0}};
  const auto read = [](const row& typed) {
    date_time_fields fields;
    uint64_t found = 0;
    return parse_date_time(typed.date, typed.time, typed.order, '-', fields) &&
                   filetime_of_fields(fields, found)
               ? found
               : 0;
  };
  for (const row& typed : rows) EXPECT_EQ(read(typed), typed.found) << typed.date << typed.time;
  for (const char* bad : {"1600-12-31", "1900-02-29", "2014-04-31", "2014-00-05", "2014-13-05",
                          "2014-03-32", "2014/03/05", "2014-03", "2014-Foo-05", ""}) {
    EXPECT_EQ(read({bad, "", "YMD"}), 0U) << bad;
  }
  for (const char* bad : {"1307", "13:", "24:00", "13:60", "13:07:60"}) {
    EXPECT_EQ(read({"2014-03-05", bad, "YMD"}), 0U) << bad;
  }
}

}  // namespace
