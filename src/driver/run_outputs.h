// The files that a run writes text to: whether they may be written, and their opening.
#pragma once

#include "base/diagnostics_log.h"
#include "driver/options/run_options.h"

namespace ovrik {

/// Opens the diagnostics file, if one is asked for, and tries the results file. A diagnostics file
/// that does not open is passed over. False: one of them is evidence or the results file cannot be
/// made, which has been said on standard error.
bool prepare_outputs(diagnostics_log& log, const run_options& options);

}  // namespace ovrik
