// The dates that open and close the window of file times.
#include "driver/options/date_window.h"

#include <gtest/gtest.h>

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
    date_window window;
    std::string words;
    EXPECT_EQ(row.taken, take_start_time(window, row.value, words)) << row.value;
    EXPECT_EQ(row.taken, take_stop_time(window, row.value, words)) << row.value;
    EXPECT_EQ(row.start, window.start.value_or(0)) << row.value;
    EXPECT_EQ(row.stop, window.stop.value_or(0)) << row.value;
  }
  date_window window;  // ends no earlier than it starts
  std::string words;
  EXPECT_TRUE(take_start_time(window, "2020-02-02 10:00", words));
  EXPECT_TRUE(take_stop_time(window, "2020-02-02 09:59:59", words) && !window.stop);
  EXPECT_EQ(words, "invalid stop time, ignoring\n");
  EXPECT_TRUE(take_stop_time(window, "2020-02-02 10:00", words) && window.stop);
}

}  // namespace
