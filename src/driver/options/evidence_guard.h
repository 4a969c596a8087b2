// Keeps a run from writing to its own evidence.
#pragma once

#include <string>

#include "driver/options/run_options.h"

namespace ovrik {

/// Why the run must not write to `path`, as a line without its end: it leads, under whatever name
/// or link, to a source of the run, to a file that an argument which no option took names, or to
/// what looks like evidence. Empty if nothing speaks against it.
std::string reason_to_spare(const std::string& path, const run_options& options);

}  // namespace ovrik
