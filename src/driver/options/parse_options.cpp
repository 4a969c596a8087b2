#include "driver/options/parse_options.h"

#include <utility>

#include "base/number_text.h"
#include "driver/options/option_reading.h"

namespace ovrik {

namespace {

/// Which modes the command line names beside a source.
struct named_modes {
  bool pipe_binary = false;
  bool binary = false;
  bool memfile = false;
};

/// The one road that a run takes.
run_road road_of(const named_modes& modes, const run_options& options) {
  if (modes.pipe_binary) return run_road::pipe_binary;
  if (modes.binary) return run_road::binary;
  if (modes.memfile) return run_road::memfile;
  if (options.source.kind == source_kind::vmdk) return run_road::vmdk;
  if (options.source.kind != source_kind::none) return run_road::hive;
  const bool list = options.list.from_standard_input || options.list.from_folder;
  return list ? run_road::list : run_road::none;
}

/// Takes the file of a mode that reads it as it is.
bool take_raw_file(const char* name, option_reading& reading) {
  std::string& path = reading.options.source.path;
  if (!take_option(name, path, reading.args)) return false;
  reading.options.named_sources.push_back(path);
  return true;
}

/// Reads all options in their order. False: the run must stop.
bool read_options(option_reading& reading) {
  if (reading.args.empty()) return false;
  run_options& options = reading.options;
  options.command_line = joined_arguments(reading.args, '"');
  options.rows.program_name = program_name_of(reading.args.front());
  if (!read_common_options(reading)) return false;

  argument_list& args = reading.args;
  std::string value;
  named_modes modes;
  if (take_option("-offset", value, args)) parse_u64(value, options.source.volume_offset);
  options.all_controlsets = take_flag("-all_controlsets", args);
  // Both keep their file where the other one's may stand too: the last one read counts.
  modes.binary = take_raw_file("-binary", reading);
  modes.memfile = take_raw_file("-memfile", reading);
  modes.pipe_binary = take_flag("-pipe_binary", args);
  if (!modes.pipe_binary && !read_source_option(reading)) return false;
  options.road = road_of(modes, options);
  options.shim.raw_mode = options.source.kind == source_kind::extract;
  options.shim.inc_slack = take_flag("-inc_slack", args);
  options.shim.sort_by_name = take_flag("-sort_by_name", args);
  return true;
}

}  // namespace

parsed_options parse_options(argument_list args) {
  option_reading reading;
  reading.args = std::move(args);
  const bool valid = read_options(reading);
  reading.options.unread = std::move(reading.args);
  return {std::move(reading.options), valid, std::move(reading.words)};
}

}  // namespace ovrik
