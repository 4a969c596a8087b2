#include "output/lv_time.h"

#include "base/filetime.h"
#include "base/number_text.h"

namespace ovrik {

namespace {

constexpr uint64_t seconds_per_day = 24 * 60 * 60;

constexpr std::string_view month_names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

struct calendar_date {
  uint64_t year;
  uint64_t month;
  uint64_t day;
};

/// The proleptic Gregorian date of a day counted from 1601-01-01. Years are taken to begin in
/// March, so that the leap day is the last of its year and every 400 years look the same.
calendar_date date_of_day(uint64_t days_since_1601) {
  constexpr uint64_t days_from_1600_03_01_to_1601 = 306;
  constexpr uint64_t days_per_era = 146097;
  const uint64_t days = days_since_1601 + days_from_1600_03_01_to_1601;
  const uint64_t era = days / days_per_era;
  const uint64_t day_of_era = days % days_per_era;
  const uint64_t year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const uint64_t day_of_year =
      day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const uint64_t month_from_march = (5 * day_of_year + 2) / 153;
  const uint64_t day = day_of_year - (153 * month_from_march + 2) / 5 + 1;
  const uint64_t month = month_from_march < 10 ? month_from_march + 3 : month_from_march - 9;
  const uint64_t year = 1600 + 400 * era + year_of_era + (month <= 2 ? 1 : 0);
  return {year, month, day};
}

/// The first `digits` digits of the fraction, by cutting: never rounded.
std::string fraction_text(const time_value& value, uint32_t digits) {
  if (digits == 3) return decimal_text(value.millisecond, digits);
  const uint32_t full_digits = digits <= 6 ? 6 : 9;
  uint32_t fraction = digits <= 6 ? value.microsecond : value.nanosecond;
  for (uint32_t i = digits; i < full_digits; ++i) fraction /= 10;
  return decimal_text(fraction, digits);
}

std::string date_text_of(const time_value& value, uint32_t flags) {
  const bool named = (flags & date_time_writer::month_name_bit) != 0;
  const std::string day = decimal_text(value.day, 2);
  const std::string month =
      named ? std::string(month_name(value.month)) : decimal_text(value.month, 2);
  const std::string year =
      decimal_text(value.year, (flags & date_time_writer::year_four_bit) != 0 ? 4 : 2);
  const char separator = static_cast<char>(flags & date_time_writer::separator_mask);
  if ((flags & date_time_writer::day_month_year_bit) != 0) {
    return day + separator + month + separator + year;
  }
  if ((flags & date_time_writer::month_day_year_bit) != 0) {
    return month + separator + day + separator + year;
  }
  if ((flags & date_time_writer::year_month_day_bit) != 0 && !named) {
    return year + separator + month + separator + day;
  }
  return {};
}

}  // namespace

bool filetime_to_unix(uint64_t filetime, uint64_t& seconds) {
  if (filetime >> 63 != 0) return false;
  seconds = (filetime - unix_epoch_filetime) / ticks_per_second;
  return true;
}

bool decode_filetime(time_value& value, uint64_t filetime) {
  value = {};
  value.filetime = filetime;
  if (filetime == 0 || !filetime_to_unix(filetime, value.unix_seconds) || value.unix_seconds == 0) {
    return false;
  }
  const uint64_t seconds = filetime / ticks_per_second;
  const uint64_t ticks = filetime % ticks_per_second;
  const calendar_date date = date_of_day(seconds / seconds_per_day);
  const uint64_t second_of_day = seconds % seconds_per_day;
  value.year = static_cast<uint16_t>(date.year);
  value.month = static_cast<uint16_t>(date.month);
  value.day = static_cast<uint16_t>(date.day);
  value.hour = static_cast<uint16_t>(second_of_day / 3600);
  value.minute = static_cast<uint16_t>(second_of_day / 60 % 60);
  value.second = static_cast<uint16_t>(second_of_day % 60);
  value.millisecond = static_cast<uint16_t>(ticks / 10'000);
  value.microsecond = static_cast<uint32_t>(ticks / 10);
  value.nanosecond = static_cast<uint32_t>(ticks * 100);
  value.valid = date.year >= 1900 && date.year <= 3000;
  return value.valid;
}

bool decode_time(time_value& value, uint64_t number, time_encoding encoding) {
  if (encoding == time_encoding::filetime) return decode_filetime(value, number);
  value = {};
  if (number == 0) return false;
  return decode_filetime(value, (number + unix_epoch_seconds) * ticks_per_second);
}

bool compile_date_time(date_time_writer& writer, std::string_view date_format,
                       std::string_view time_format, bool pair) {
  using bits = date_time_writer;
  constexpr size_t none = std::string_view::npos;
  uint32_t& flags = writer.flags;
  flags = pair ? bits::pair_bit : 0;

  if (!date_format.empty()) {
    for (const char separator : {'/', '-', ' '}) {
      if (date_format.find(separator) == none) continue;
      flags |= static_cast<unsigned char>(separator);
      break;
    }
    const bool named = date_format.find("mmm") != none;
    const size_t month_at = date_format.find(named ? "mmm" : "mm");
    if (month_at == none) return false;
    flags |= named ? bits::month_name_bit : bits::month_number_bit;
    const bool four = date_format.find("yyyy") != none;
    const size_t year_at = date_format.find(four ? "yyyy" : "yy");
    if (year_at == none) return false;
    flags |= four ? bits::year_four_bit : bits::year_two_bit;
    if (date_format.find(',') != none) flags |= bits::comma_bit;
    const size_t day_at = date_format.find("dd");
    if (day_at == none) return false;
    if (day_at < month_at && month_at < year_at) {
      flags |= bits::day_month_year_bit;
    } else if (month_at < day_at && day_at < year_at) {
      flags |= bits::month_day_year_bit;
    } else if (year_at < month_at && month_at < day_at) {
      flags |= bits::year_month_day_bit;
    } else {
      return false;
    }
  }

  if (time_format.find("xxx") != none) {
    const size_t digits = time_format.rfind('x') - time_format.find('x') + 1;
    flags |= static_cast<uint32_t>(digits < 9 ? digits : 9) << bits::fraction_shift;
  }
  return true;
}

void format_date_time(std::string& date_text, std::string& time_text, const time_value& value,
                      const date_time_writer& writer) {
  date_text.clear();
  time_text.clear();
  if (!value.valid) return;
  uint32_t flags = writer.flags;
  if (flags == 0) {  // nothing compiled: the default look
    date_time_writer standard;
    compile_date_time(standard, "yyyy-mm-dd", "hh:mm:ss.xxx", false);
    flags = standard.flags;
  }
  date_text = date_text_of(value, flags);
  time_text = decimal_text(value.hour, 2) + ':' + decimal_text(value.minute, 2) + ':' +
              decimal_text(value.second, 2);
  if (const uint32_t digits = flags >> date_time_writer::fraction_shift; digits != 0) {
    time_text += '.' + fraction_text(value, digits);
  }
}

std::string_view month_name(uint32_t month) {
  return month >= 1 && month <= 12 ? month_names[month - 1] : std::string_view();
}

}  // namespace ovrik
