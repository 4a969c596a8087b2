#include "driver/options/date_window.h"

#include "driver/host/console.h"
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

bool to_filetime(const date_and_time& parts, uint64_t& filetime) {
  date_time_fields fields;
  return parse_date_time(parts.date, parts.time, "YMD", parts.separator, fields) &&
         filetime_of_fields(fields, filetime);
}

}  // namespace

bool take_start_time(cmd_params& options, const std::string& value) {
  date_and_time parts;
  if (!split_value(value, parts)) return false;
  options.start_time_on = to_filetime(parts, options.start_filetime);
  if (!options.start_time_on) print_message("invalid start time, ignoring\n");
  return true;
}

bool take_stop_time(cmd_params& options, const std::string& value) {
  date_and_time parts;
  if (!split_value(value, parts)) return false;
  if (parts.time.empty()) parts.time = "23:59:59";
  uint64_t stop = 0;
  options.stop_time_on =
      to_filetime(parts, stop) && !(options.start_time_on && stop < options.start_filetime);
  if (options.stop_time_on) {
    options.stop_filetime = stop;
  } else {
    print_message("invalid stop time, ignoring\n");
  }
  return true;
}

bool lies_in_date_window(const cmd_params& options, const std::string& path) {
  if (!options.start_time_on && !options.stop_time_on) return true;
  lvportdir::file_times times;
  if (!lvportdir::file_status(path, times) || times.written == 0) return false;
  if (options.start_time_on && times.written < options.start_filetime &&
      times.created < options.start_filetime) {
    return false;
  }
  return !options.stop_time_on ||
         (times.written <= options.stop_filetime && times.created <= options.stop_filetime);
}

}  // namespace ovrik
