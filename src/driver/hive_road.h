// The road over one SYSTEM hive.
#pragma once

#include <cstdint>
#include <ostream>

#include "driver/options/cmd_params.h"
#include "hive/reg_clas.h"

namespace ovrik {

/// Writes the rows of the hive that `options` names to `out`. Returns the exit value.
int32_t run_hive_road(cmdline_options& options, std::ostream& out);

/// Prints the cache of an open SYSTEM hive. False: it has none, which has been said, or no control
/// sets where all of them were asked for.
bool print_hive(cmdline_options& options, std::ostream& out, const reg_hive& hive);

}  // namespace ovrik
