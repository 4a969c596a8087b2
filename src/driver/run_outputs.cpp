#include "driver/run_outputs.h"

#include <memory>
#include <utility>

#include "base/clean_text.h"
#include "driver/host/console.h"
#include "driver/options/evidence_guard.h"
#include "driver/results_file.h"
#include "output/streams.h"
#include "sources/host/file_places.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

namespace {

constexpr const char* shared_reason = "it is to take the results and the diagnostics";

void open_diagnostics(diagnostics_log& log, const run_options& options) {
  const std::string& path = options.diagnostics.path;
  auto stream = std::make_unique<uni::file_output>(path);
  if (!stream->is_open()) return;
  log.diag_on = true;
  log.diag_path = path;
  log.diag_stream = std::move(stream);
  *log.diag_stream << "->" << clean_text(options.command_line) << '\n';
}

/// Says why a file is not written to. Nothing is said, and the result is true, without a reason.
bool is_free(const std::string& path, const std::string& reason) {
  if (reason.empty()) return true;
  print_message("prob opening file %s for output, aborting\n", path.c_str());
  print_message("%s is left as it is: %s\n", path.c_str(), reason.c_str());
  return false;
}

/// True if the results go into the file of the diagnostics.
bool are_one_file(const run_options& options) {
  const std::string& diagnostics = options.diagnostics.path;
  // A pipe is not opened only to look at it: its reader would see an end.
  if (!options.diagnostics.given || lvportdir::is_pipe(diagnostics) ||
      !lvportdir::is_plain_file(diagnostics)) {
    return false;
  }
  return options.results.given ? lvportdir::same_file(diagnostics, options.results.path)
                               : lvportdir::is_standard_output(diagnostics);
}

bool is_free_for(const named_output& output, const run_options& options) {
  std::string reason = reason_to_spare(output.path, options);
  if (reason.empty() && are_one_file(options)) reason = shared_reason;
  return is_free(output.path, reason);
}

}  // namespace

bool prepare_outputs(diagnostics_log& log, const run_options& options) {
  if (options.diagnostics.given) {
    if (!is_free_for(options.diagnostics, options)) return false;
    open_diagnostics(log, options);
  }
  // Two names of one file that did not exist show only once it does.
  return !options.results.given ||
         (is_free_for(options.results, options) && probe_results_file(options.results.path));
}

}  // namespace ovrik
