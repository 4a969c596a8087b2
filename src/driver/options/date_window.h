// The window of file times that -cmd_start_time and -cmd_stop_time open.
#pragma once

#include <string>

#include "driver/options/cmd_params.h"

namespace ovrik {

/// Opens the window at "date [time]", a date being year, month and day with "-" or "/" between. A
/// date that does not exist is said on standard error and leaves that side open. False: no date.
bool take_start_time(cmd_params& options, const std::string& value);

/// Closes the window at "date [time]"; without a time at the end of that day. A date in front of
/// the start is treated like one that does not exist. False: no date.
bool take_stop_time(cmd_params& options, const std::string& value);

/// True if the file at `path` lies in the window, or there is none. False: it does not, or nothing
/// is known of its times.
bool lies_in_date_window(const cmd_params& options, const std::string& path);

}  // namespace ovrik
