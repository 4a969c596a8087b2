// What the tables of options share while a command line is read.
#pragma once

#include <string>

#include "driver/options/run_options.h"

namespace ovrik {

/// A command line that is being read.
struct option_reading {
  run_options options;
  argument_list args;  ///< what is left to be read
  std::string words;   ///< what is to be said about it on standard error
  std::string date_format = "yyyy-mm-dd";
  std::string time_format = "hh:mm:ss.xxx";
};

/// What an option does with its value (empty for a flag). False: the run must stop.
using option_effect = bool (*)(option_reading& reading, const std::string& value);

/// Reads the options that a family of tools has in common. False: the run must stop.
bool read_common_options(option_reading& reading);

/// Reads the option that names the source, the first of them that is there. False: the run must
/// stop.
bool read_source_option(option_reading& reading);

}  // namespace ovrik
