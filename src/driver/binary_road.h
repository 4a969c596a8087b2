// The roads over raw cache values in files of their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

#include "base/diagnostics_log.h"
#include "driver/options/run_options.h"
#include "output/row_writer.h"
#include "sources/host/read_faults.h"

namespace ovrik {

/// The most that is read of a raw cache file, in bytes.
constexpr size_t max_binary_file = 0x1000000;

/// Writes the rows of the raw cache at `path`. `shown_location` is what the rows name as its hive.
/// Returns the exit value; what is to be said goes to `standard_output`, what cannot be read to
/// `faults`.
int32_t run_binary_road(const std::string& path, const std::string& shown_location,
                        const shim_settings& settings, row_writer& writer,
                        std::ostream& standard_output, read_faults& faults);

/// Writes the rows of the raw caches whose paths stand on the standard input to `out`, each below a
/// heading of its own. A file that cannot be read, is no cache or does not pass the filters is left
/// out; only the diagnostics tell. Returns the exit value.
int32_t run_pipe_binary_road(const run_options& options, std::ostream& out, diagnostics_log& log);

}  // namespace ovrik
