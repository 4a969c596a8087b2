// The window of file times that -cmd_start_time and -cmd_stop_time open.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ovrik {

/// FILETIMEs, both within the window; a side without one is open.
struct date_window {
  std::optional<uint64_t> start;
  std::optional<uint64_t> stop;
};

/// Opens the window at "date [time]", a date being year, month and day with "-" or "/" between. A
/// date that does not exist leaves that side open, which `words` says. False: no date.
bool take_start_time(date_window& window, const std::string& value, std::string& words);

/// Closes the window at "date [time]"; without a time at the end of that day. A date in front of
/// the start is treated like one that does not exist. False: no date.
bool take_stop_time(date_window& window, const std::string& value, std::string& words);

/// True if the file at `path` lies in the window, or the window is open on both sides. False: it
/// does not, or nothing is known of its times.
bool lies_in_date_window(const date_window& window, const std::string& path);

}  // namespace ovrik
