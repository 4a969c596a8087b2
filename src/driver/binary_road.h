// The roads over raw cache values in files of their own.
#pragma once

#include <cstdint>
#include <ostream>

#include "driver/options/cmd_params.h"

namespace ovrik {

/// The most that is read of a raw cache file, in bytes.
constexpr size_t max_binary_file = 0x1000000;

/// Writes the rows of the raw cache at `options.source_path` to `out`. Returns the exit value; what
/// is to be said goes to `standard_output`.
int32_t run_binary_road(cmdline_options& options, std::ostream& out, std::ostream& standard_output);

/// Writes the rows of the raw caches whose paths stand on the standard input, each below a heading
/// of its own. A file that cannot be read, is no cache or does not pass the filters is left out;
/// only the diagnostics tell. Returns the exit value.
int32_t run_pipe_binary_road(cmdline_options& options, std::ostream& out);

}  // namespace ovrik
