// What a user is told about evidence that could not be read.
#pragma once

#include "base/diagnostics_log.h"
#include "sources/host/read_faults.h"

namespace ovrik {

/// Says on standard error what could not be read, a line for each of the first eight stretches and
/// the total of several; the diagnostics name them all. `faults` is empty afterwards. False: there
/// was nothing to say.
bool say_read_faults(read_faults& faults, diagnostics_log& log);

}  // namespace ovrik
