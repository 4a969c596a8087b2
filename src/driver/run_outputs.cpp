#include "driver/run_outputs.h"

#include <memory>
#include <utility>

#include "base/clean_text.h"
#include "driver/options/evidence_guard.h"
#include "driver/results_file.h"
#include "output/streams.h"

namespace ovrik {

namespace {

void open_diagnostics(diagnostics_log& log, const run_options& options) {
  const std::string& path = options.diagnostics.path;
  auto stream = std::make_unique<uni::file_output>(path);
  if (!stream->is_open()) return;
  log.diag_on = true;
  log.diag_path = path;
  log.diag_stream = std::move(stream);
  *log.diag_stream << "->" << clean_text(options.command_line) << '\n';
}

}  // namespace

bool prepare_outputs(diagnostics_log& log, const run_options& options) {
  const named_output& diagnostics = options.diagnostics;
  const named_output& results = options.results;
  if (diagnostics.given) {
    if (!is_free_of_evidence(diagnostics.path, diagnostics.beside)) return false;
    open_diagnostics(log, options);
  }
  return !results.given ||
         (is_free_of_evidence(results.path, results.beside) && probe_results_file(results.path));
}

}  // namespace ovrik
