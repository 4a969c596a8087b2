#include "driver/tool_options.h"

#include <cstdio>

#include "base/number_text.h"
#include "driver/common_options.h"
#include "driver/path_variables.h"

namespace ovrik {

namespace {

/// Where a run takes its hive from. The first one that is present is the source.
struct source_option {
  const char* name;
  bool cmdline_options::*mode;
  bool expand;  ///< variables in the value are replaced
};

constexpr source_option source_options[] = {
    {"-extract", &cmdline_options::extract_mode, false},
    {"-hive", &cmdline_options::hive_mode, true},
};

void take_source(cmdline_options& options, argument_list& args) {
  for (const source_option& source : source_options) {
    std::string value;
    if (!take_option(source.name, value, args)) continue;
    options.*source.mode = true;
    options.source_path = source.expand ? expand_path_variables(value) : value;
    return;
  }
}

}  // namespace

bool parse_tool_options(cmdline_options& options, argument_list& args) {
  if (!parse_common_options(options, args)) return false;
  std::string value;
  if (take_option("-offset", value, args)) parse_u64(value, options.volume_offset);
  options.all_controlsets = take_flag("-all_controlsets", args);
  options.section_headers = !options.form_l2t;
  if (take_option("-binary", value, args)) {
    options.binary_mode = true;
    options.source_path = value;
  }
  options.pipe_binary_mode = take_flag("-pipe_binary", args);
  if (!options.pipe_binary_mode) take_source(options, args);
  options.raw_mode = options.extract_mode;
  options.inc_slack = take_flag("-inc_slack", args);
  options.sort_by_name = take_flag("-sort_by_name", args);
  return true;
}

}  // namespace ovrik
