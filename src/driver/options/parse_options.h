// The command line as options.
#pragma once

#include <string>

#include "driver/options/run_options.h"

namespace ovrik {

/// What became of a command line. Nothing was opened and nothing printed for it.
struct parsed_options {
  run_options options;
  bool valid = false;  ///< false: the run must stop; `options` holds what was read up to there
  std::string words;   ///< what is to be said about the options on standard error
};

/// Reads the arguments (UTF-8, the program path first).
parsed_options parse_options(argument_list args);

}  // namespace ovrik
