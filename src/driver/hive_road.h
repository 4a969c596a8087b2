// The road over one SYSTEM hive.
#pragma once

#include <cstdint>
#include <ostream>

#include "driver/cmd_params.h"

namespace ovrik {

/// Writes the rows of the hive that `options` names to `out`. Returns the exit value.
int32_t run_hive_road(cmdline_options& options, std::ostream& out);

}  // namespace ovrik
