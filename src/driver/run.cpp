#include "driver/run.h"

#include <utility>

#include "driver/binary_road.h"
#include "driver/cmdline_ctx.h"
#include "driver/hive_road.h"
#include "driver/host/console.h"
#include "driver/list_road.h"
#include "driver/memfile_road.h"
#include "driver/memory_end.h"
#include "driver/opened_source.h"
#include "driver/options/command_line.h"
#include "driver/options/parse_options.h"
#include "driver/read_words.h"
#include "driver/results_file.h"
#include "driver/run_outputs.h"
#include "driver/vmdk_road.h"

namespace ovrik {

namespace {

/// Opens what the command line asks for, in the order of its reading. False: the run must stop;
/// why has been said on standard error.
bool prepare_run(const parsed_options& parsed, diagnostics_log& log, opened_source& source,
                 read_faults& faults) {
  if (!prepare_outputs(log, parsed.options)) return false;
  print_message("%s", parsed.words.c_str());
  return parsed.valid && open_source(source, parsed.options.source, log, faults);
}

/// What the run reads, in a word.
std::string source_name(const run_options& options) {
  if (!options.source.path.empty()) return options.source.path;
  if (!options.source.vmdk_files.empty()) return options.source.vmdk_files.front();
  return options.list.from_folder ? options.list.folder : "the list";
}

/// What the end of the run needs to know.
void prepare_end(cmdline_ctx& context, const run_options& options, const diagnostics_log& log) {
  context.clear_line_at_end = options.show_progress;
  context.profile = options.profile;
  context.diag_path = log.diag_path;
  if (options.profile || log.diag_on) context.start_timing();
  context.signal_name = options.signal_name;
}

/// Takes the one road that the options choose.
int32_t take_road(const run_options& options, opened_source& source, std::ostream& out,
                  std::ostream& standard_output, const hive_opening& opening) {
  auto& [log, faults, with_logs] = opening;
  row_writer writer(out, options.rows);
  const bool extracts = options.shim.raw_mode && options.results.given;
  const hive_output output = {.writer = writer,
                              .shim = options.shim,
                              .aliases = options.aliases,
                              .opening = opening,
                              .all_controlsets = options.all_controlsets,
                              .names_hives = options.road == run_road::list,
                              .show_progress = options.show_progress,
                              .extract_path = extracts ? options.results.path : ""};
  switch (options.road) {
    case run_road::pipe_binary:
      return run_pipe_binary_road(options, out, log);
    case run_road::binary:
      return run_binary_road(source.path, options.aliases.shown({}), options.shim, writer,
                             standard_output, faults);
    case run_road::memfile:
      return run_memfile_road({source.path, options.results.path, options.show_progress}, log,
                              faults);
    case run_road::hive:
      return run_hive_road(source, options.source.kind, output);
    case run_road::vmdk:
      return run_vmdk_road(source, output);
    case run_road::list:
      return run_list_road(options.list, output);
    case run_road::none:
      break;
  }
  return 0;
}

}  // namespace

int32_t run(argument_list args) {
  cmdline_ctx context;
  std::string header_text;
  if (prepare_command_line(args, header_text)) return 0;

  const parsed_options parsed = parse_options(std::move(args));
  const run_options& options = parsed.options;
  diagnostics_log log;
  read_faults faults;
  opened_source source;
  results_stream standard_output;
  const bool prepared = unless_memory_ends(source_name(options), [&] {
                          return prepare_run(parsed, log, source, faults) ? 0 : -1;
                        }) == 0;
  if (!prepared) {
    say_read_faults(faults, log);
    standard_output.out() << header_text << '\n';
    standard_output.finish();
    return -1;
  }
  prepare_end(context, options, log);

  results_stream results_file;
  if (options.results.given && !results_file.open(options.results.path)) {
    print_message("prob opening results file: %s for writing\n", options.results.path.c_str());
    return -1;
  }
  std::ostream& out = options.results.given ? results_file.out() : standard_output.out();
  // The header goes out at once: -extract puts a value in its place, in the same file.
  out << header_text << std::endl;

  int32_t exit_value = unless_memory_ends(source_name(options), [&] {
    return take_road(options, source, out, standard_output.out(), {log, faults, options.with_logs});
  });
  if (say_read_faults(faults, log)) exit_value = -1;
  if (options.results.given && !results_file.finish()) exit_value = -1;
  if (!standard_output.finish()) exit_value = -1;
  return exit_value;
}

}  // namespace ovrik
