#include "output/date_text.h"

#include <string>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "output/lv_time.h"

namespace ovrik {

namespace {

bool parse_month(const std::string& text, uint32_t& month) {
  for (uint32_t candidate = 1; candidate <= 12; ++candidate) {
    if (equal_ignoring_case(text, month_name(candidate))) {
      month = candidate;
      return true;
    }
  }
  return parse_u32(text, month);
}

uint32_t full_year(uint32_t year) {
  if (year > 99) return year;
  return year <= 30 ? 2000 + year : 1900 + year;
}

bool parse_date(std::string_view text, std::string_view order, char delimiter,
                date_time_fields& fields) {
  const std::vector<std::string> parts = split(text, delimiter);
  if (text.empty() || parts.size() != order.size()) return false;
  for (size_t i = 0; i < parts.size(); ++i) {
    const std::string part = trim(parts[i]);
    const bool parsed = order[i] == 'Y'   ? parse_u32(part, fields.year)
                        : order[i] == 'M' ? parse_month(part, fields.month)
                                          : parse_u32(part, fields.day);
    if (!parsed) return false;
  }
  fields.year = full_year(fields.year);
  return fields.month <= 12 && fields.day <= 31;
}

/// Reads seconds with an optional fraction; the fraction is rounded to milliseconds.
bool parse_seconds(std::string_view text, date_time_fields& fields) {
  const size_t point = text.find('.');
  if (!parse_u32(text.substr(0, point), fields.second)) return false;
  if (point == std::string_view::npos) return true;
  uint32_t scaled = 0;  // the first four digits of the fraction, the last of which rounds
  uint32_t weight = 1000;
  for (const char c : text.substr(point + 1)) {
    if (c < '0' || c > '9') return false;
    scaled += static_cast<uint32_t>(c - '0') * weight;
    weight /= 10;
  }
  fields.millisecond = (scaled + 5) / 10;
  return true;
}

bool parse_time(std::string_view text, date_time_fields& fields) {
  std::string time = lower_ascii(trim(text));
  if (time.empty()) return true;
  bool afternoon = false;
  if (const size_t m = time.find('m'); m != std::string::npos) {
    afternoon = m > 0 && time[m - 1] == 'p';
    const bool marked = afternoon || (m > 0 && time[m - 1] == 'a');
    time = trim(std::string_view(time).substr(0, marked ? m - 1 : m));
  }
  const std::vector<std::string> parts = split(time, ':');
  if (parts.size() < 2 || parts.size() > 3) return false;
  if (parts[1].size() > 31 || !parse_u32(parts[0], fields.hour) ||
      !parse_u32(parts[1], fields.minute)) {
    return false;
  }
  if (afternoon) fields.hour += 12;
  return parts.size() == 2 || parse_seconds(parts[2], fields);
}

bool is_leap(uint32_t year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

uint32_t days_in_month(uint32_t year, uint32_t month) {
  constexpr uint32_t days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return days[month - 1] + (month == 2 && is_leap(year) ? 1 : 0);
}

}  // namespace

bool parse_date_time(std::string_view date_text, std::string_view time_text, std::string_view order,
                     char delimiter, date_time_fields& fields) {
  fields = {};
  return parse_date(date_text, order, delimiter, fields) && parse_time(time_text, fields);
}

bool filetime_of_fields(const date_time_fields& fields, uint64_t& filetime) {
  if (fields.year < 1601 || fields.year > 9999 || fields.month < 1 || fields.month > 12 ||
      fields.day < 1 || fields.day > days_in_month(fields.year, fields.month) || fields.hour > 23 ||
      fields.minute > 59 || fields.second > 59) {
    return false;
  }
  uint64_t days = fields.day - 1;
  for (uint32_t year = 1601; year < fields.year; ++year) days += is_leap(year) ? 366U : 365U;
  for (uint32_t month = 1; month < fields.month; ++month) days += days_in_month(fields.year, month);
  const uint64_t seconds = ((days * 24 + fields.hour) * 60 + fields.minute) * 60 + fields.second;
  filetime = (seconds * 1000 + fields.millisecond) * 10'000;
  return true;
}

}  // namespace ovrik
