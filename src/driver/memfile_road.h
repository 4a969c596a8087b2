// The road that carves cache data out of a raw file.
#pragma once

#include <cstdint>
#include <string>

#include "base/diagnostics_log.h"
#include "sources/host/read_faults.h"

namespace ovrik {

/// What carving reads of the options of a run.
struct carving_request {
  std::string source_path;
  std::string results_path;  ///< no chunk takes its place; empty for none
  bool show_progress = true;
};

/// Carves the source and writes the chunks and a list of their pages into the folder "out3". What
/// is to be said goes to standard error. Returns the exit value: 0 if there is a chunk and nothing
/// that was opened failed to be written. What of the source cannot be read goes to `faults`.
int32_t run_memfile_road(const carving_request& request, diagnostics_log& log, read_faults& faults);

}  // namespace ovrik
