// The options of this program beside the common ones.
#pragma once

#include "driver/options/cmd_params.h"
#include "driver/options/option_scan.h"

namespace ovrik {

/// Fills `options` from the arguments. False: the run must stop; what is to be said about that has
/// been printed to standard error.
bool parse_tool_options(cmdline_options& options, argument_list& args);

}  // namespace ovrik
