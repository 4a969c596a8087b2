// The road that carves cache data out of a raw file.
#pragma once

#include <cstdint>

#include "driver/options/cmd_params.h"

namespace ovrik {

/// Carves the file at `options.source_path` and writes the chunks and a list of their pages into
/// the folder "out3". What is to be said goes to standard error. Returns the exit value: 0 if there
/// is a chunk and nothing that was opened failed to be written.
int32_t run_memfile_road(cmdline_options& options);

}  // namespace ovrik
