#include "driver/options/date_window.h"

#include "output/date_text.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

struct date_and_time {
  std::string date;
  std::string time;
  char separator = '-';
};

/// Cuts a value at its first blank. False: it has no date, or one without a separator.
bool split_value(const std::string& value, date_and_time& parts) {
  const size_t blank = value.find(' ');
  parts.date = value.substr(0, blank);
  if (blank != std::string::npos) parts.time = value.substr(blank + 1);
  if (parts.date.find('-') == std::string::npos) parts.separator = '/';
  return parts.date.find(parts.separator) != std::string::npos;
}

std::optional<uint64_t> filetime_of(const date_and_time& parts) {
  date_time_fields fields;
  uint64_t filetime = 0;
  if (!parse_date_time(parts.date, parts.time, "YMD", parts.separator, fields) ||
      !filetime_of_fields(fields, filetime)) {
    return std::nullopt;
  }
  return filetime;
}

}  // namespace

bool take_start_time(date_window& window, const std::string& value, std::string& words) {
  date_and_time parts;
  if (!split_value(value, parts)) return false;
  window.start = filetime_of(parts);
  if (!window.start) words += "invalid start time, ignoring\n";
  return true;
}

bool take_stop_time(date_window& window, const std::string& value, std::string& words) {
  date_and_time parts;
  if (!split_value(value, parts)) return false;
  if (parts.time.empty()) parts.time = "23:59:59";
  window.stop = filetime_of(parts);
  if (window.stop && window.start && *window.stop < *window.start) window.stop.reset();
  if (!window.stop) words += "invalid stop time, ignoring\n";
  return true;
}

bool lies_in_date_window(const date_window& window, const std::string& path) {
  if (!window.start && !window.stop) return true;
  lvportdir::file_times times;
  if (!lvportdir::file_status(path, times) || times.written == 0) return false;
  if (window.start && times.written < *window.start && times.created < *window.start) return false;
  return !window.stop || (times.written <= *window.stop && times.created <= *window.stop);
}

}  // namespace ovrik
