// Times: FILETIMEs (100-nanosecond units since 1601-01-01) to calendar fields and to text. All
// times are UTC and are never shifted to a local zone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ovrik {

/// A decoded point in time.
struct time_value {
  uint64_t unix_seconds = 0;  ///< since 1970-01-01
  uint64_t filetime = 0;
  uint16_t year = 0;   ///< full year
  uint16_t month = 0;  ///< 1 to 12
  uint16_t day = 0;    ///< 1 to 31
  uint16_t hour = 0;
  uint16_t minute = 0;
  uint16_t second = 0;
  uint16_t millisecond = 0;  ///< fraction of the second, 0 to 999
  uint32_t microsecond = 0;  ///< the same fraction, 0 to 999999
  uint32_t nanosecond = 0;   ///< the same fraction, a multiple of 100
  bool valid = false;        ///< the time passed the tests of `decode_filetime`
};

/// How a time is stored.
enum class time_encoding : uint16_t { filetime = 1, unix_seconds = 8 };

/// Seconds since 1970 of a FILETIME. One before 1970 wraps to a huge number. False, with
/// `seconds` kept: `filetime` has its top bit set.
bool filetime_to_unix(uint64_t filetime, uint64_t& seconds);

/// Fills `value` and returns `value.valid`. Valid is a FILETIME that is not 0, lies neither in the
/// first second of 1970 nor beyond the signed range, and has a year of 1900 to 3000.
bool decode_filetime(time_value& value, uint64_t filetime);

/// `decode_filetime` for a time in another encoding; Unix seconds of 0 are invalid.
bool decode_time(time_value& value, uint64_t number, time_encoding encoding);

/// A compiled date and time format.
struct date_time_writer {
  static constexpr uint32_t separator_mask = 0xFF;     ///< the date's separator character or 0
  static constexpr uint32_t month_name_bit = 0x100;    ///< "mmm"
  static constexpr uint32_t month_number_bit = 0x200;  ///< "mm"
  static constexpr uint32_t year_four_bit = 0x400;     ///< "yyyy"
  static constexpr uint32_t year_two_bit = 0x800;      ///< "yy"
  static constexpr uint32_t comma_bit = 0x1000;        ///< the format holds a comma
  static constexpr uint32_t day_month_year_bit = 0x2000;
  static constexpr uint32_t month_day_year_bit = 0x4000;
  static constexpr uint32_t year_month_day_bit = 0x8000;
  static constexpr uint32_t pair_bit = 0x10000;   ///< date and time in one field
  static constexpr unsigned fraction_shift = 17;  ///< above: the number of fraction digits, 0 to 9

  uint32_t flags = 0;
};

/// Fills `writer` from formats such as "yyyy-mm-dd" and "hh:mm:ss.xxx", both lower-case. False:
/// the date format lacks a month, a year or a day or has them in no known order; the flags that
/// were set before stay.
bool compile_date_time(date_time_writer& writer, std::string_view date_format,
                       std::string_view time_format, bool pair);

/// Fills the two texts from a valid time; both are empty for an invalid one. The date is empty too
/// if the writer knows no order, or a year in front of a month's name.
void format_date_time(std::string& date_text, std::string& time_text, const time_value& value,
                      const date_time_writer& writer);

/// "Jan" to "Dec"; empty outside 1 to 12.
std::string_view month_name(uint32_t month);

}  // namespace ovrik
