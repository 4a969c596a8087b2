#include "driver/date_window.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace {

using test_support::filetime;

TEST(date_window, takes_dates_with_and_without_times) {
  struct {
    const char* value;
    bool taken;
    uint64_t start, stop;  ///< 0: that side stays open
  } const rows[] = {
      {"2020-02-29", true, filetime(2020, 2, 29), filetime(2020, 2, 29, 23, 59, 59)},
      {"2020/2/29 1:02:03", true, filetime(2020, 2, 29, 1, 2, 3), filetime(2020, 2, 29, 1, 2, 3)},
      {"30-Jan-2 3:04 PM", true, filetime(2030, 1, 2, 15, 4), filetime(2030, 1, 2, 15, 4)},
      {"31-1-2 00:00", true, filetime(1931, 1, 2), filetime(1931, 1, 2)},
      {"2020-13-01", true, 0, 0},
      {"2020-01-32", true, 0, 0},
      {"2020-01-01 noon", true, 0, 0},
      {"20200101", false, 0, 0},
      {"", false, 0, 0},
  };
  for (const auto& row : rows) {
    ovrik::cmd_params start, stop;
    EXPECT_EQ(row.taken, ovrik::take_start_time(start, row.value)) << row.value;
    EXPECT_EQ(row.taken, ovrik::take_stop_time(stop, row.value)) << row.value;
    EXPECT_EQ(row.start, start.start_time_on ? start.start_filetime : 0) << row.value;
    EXPECT_EQ(row.stop, stop.stop_time_on ? stop.stop_filetime : 0) << row.value;
  }
}

TEST(date_window, ends_no_earlier_than_it_starts) {
  ovrik::cmd_params options;
  EXPECT_TRUE(ovrik::take_start_time(options, "2020-02-02 10:00"));
  EXPECT_TRUE(ovrik::take_stop_time(options, "2020-02-02 09:59:59"));
  EXPECT_FALSE(options.stop_time_on);
  EXPECT_TRUE(ovrik::take_stop_time(options, "2020-02-02 10:00"));
  EXPECT_TRUE(options.stop_time_on);
}

}  // namespace
