// The options that a family of tools has in common.
#pragma once

#include "driver/options/cmd_params.h"
#include "driver/options/option_scan.h"

namespace ovrik {

/// Fills `options` from the arguments and takes out of them what it reads. False: the run must
/// stop; what is to be said about that has been printed to standard error.
bool parse_common_options(cmd_params& options, argument_list& args);

}  // namespace ovrik
