// The road over many SYSTEM hives: a list on the standard input or a folder tree.
#pragma once

#include <cstdint>
#include <ostream>

#include "driver/options/cmd_params.h"

namespace ovrik {

/// Writes the rows of every SYSTEM hive that the list or tree names to `out`, one after another;
/// what is no SYSTEM hive is passed over. Returns the exit value.
int32_t run_list_road(cmdline_options& options, std::ostream& out);

}  // namespace ovrik
