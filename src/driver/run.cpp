#include "driver/run.h"

#include "driver/binary_road.h"
#include "driver/cmdline_ctx.h"
#include "driver/hive_road.h"
#include "driver/host/console.h"
#include "driver/list_road.h"
#include "driver/memfile_road.h"
#include "driver/options/cmd_params.h"
#include "driver/options/command_line.h"
#include "driver/options/tool_options.h"
#include "driver/results_file.h"
#include "driver/vmdk_road.h"

namespace ovrik {

namespace {

/// What the end of the run needs to know of the options.
void prepare_end(cmdline_ctx& context, const cmdline_options& options) {
  context.clear_line_at_end = options.show_progress;
  context.profile = options.profile;
  context.diag_path = options.diag_path;
  if (options.profile || options.diag_on) context.start_timing();
  context.signal_name = options.signal_name;
}

/// Takes the one road that the options choose; a second source on the command line is ignored.
int32_t take_road(cmdline_options& options, std::ostream& out, std::ostream& standard_output) {
  if (options.pipe_binary_mode) return run_pipe_binary_road(options, out);
  if (options.binary_mode) return run_binary_road(options, out, standard_output);
  if (options.memfile_mode) return run_memfile_road(options);
  if (options.hive_mode || options.extract_mode || options.livesys_mode || options.image_mode ||
      options.vss_mode) {
    return run_hive_road(options, out);
  }
  if (options.vmdk_mode) return run_vmdk_road(options, out);
  if (options.pipe_mode || options.enumdir_mode) return run_list_road(options, out);
  return 0;
}

}  // namespace

int32_t run(argument_list args) {
  cmdline_ctx context;
  std::string header_text;
  if (prepare_command_line(args, header_text)) return 0;

  cmdline_options options;
  results_stream standard_output;
  if (!parse_tool_options(options, args)) {
    standard_output.out() << header_text << '\n';
    standard_output.finish();
    return -1;
  }
  prepare_end(context, options);

  results_stream results_file;
  if (options.out_file_given && !results_file.open(options.out_path)) {
    print_message("prob opening results file: %s for writing\n", options.out_path.c_str());
    return -1;
  }
  std::ostream& out = options.out_file_given ? results_file.out() : standard_output.out();
  // The header goes out at once: -extract puts a value in its place, in the same file.
  out << header_text << std::endl;
  options.emit_row_header = true;

  int32_t exit_value = take_road(options, out, standard_output.out());
  if (options.out_file_given && !results_file.finish()) exit_value = -1;
  if (!standard_output.finish()) exit_value = -1;
  return exit_value;
}

}  // namespace ovrik
