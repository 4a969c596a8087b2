#include "driver/options/tool_options.h"

#include "base/number_text.h"
#include "driver/host/console.h"
#include "driver/host/live_system.h"
#include "driver/options/common_options.h"
#include "driver/options/path_variables.h"
#include "driver/vmdk_road.h"
#include "driver/volume_words.h"
#include "sources/disk/image_disk.h"
#include "sources/disk/shadow_copy.h"
#include "sources/disk/volume_choice.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

/// Takes the value of a source option. False: the run must stop.
using source_effect = bool (*)(cmdline_options& options, const std::string& value,
                               argument_list& args);

/// Where a run takes its hive from. The first one that is present is the source.
struct source_option {
  const char* name;
  bool has_value;
  source_effect effect;
};

bool take_live_system(cmdline_options& options, const std::string& /*value*/,
                      argument_list& /*args*/) {
  options.livesys_mode = true;
  return find_live_hive(options.source_path);
}

bool take_shadow_copy(cmdline_options& options, const std::string& value, argument_list& /*args*/) {
  options.vss_mode = true;
  options.source_path = shadow_copy_device(value);
  return check_shadow_copies();
}

bool take_extract(cmdline_options& options, const std::string& value, argument_list& /*args*/) {
  options.source_path = value;
  return options.extract_mode = true;
}

bool take_hive(cmdline_options& options, const std::string& value, argument_list& /*args*/) {
  options.source_path = expand_path_variables(value);
  return options.hive_mode = true;
}

/// An image must have an NTFS volume at the offset asked for or, if none was, at its start.
bool take_image(cmdline_options& options, const std::string& value, argument_list& args) {
  options.image_mode = true;
  options.source_path = make_absolute_path(value);
  if (options.source_path.empty()) {
    print_message("prob understanding destination of %s aborting\n,", value.c_str());
    return false;
  }
  const bool offset_given = options.volume_offset != 0;
  const bool ignore_size = offset_given && take_flag("-ignore_image_size", args);
  const auto disk = open_image(options.source_path);
  if (disk == nullptr) {
    print_message("invalid image: %s\n\n", options.source_path.c_str());
    return false;
  }
  const volume_choice choice = choose_volume(*disk, options.volume_offset, ignore_size);
  options.volume_offset = choice.offset;
  if (choice.outcome == volume_outcome::at_offset) return true;
  if (!offset_given && choice.outcome == volume_outcome::cut_short) return true;
  print_message("%s\n", volume_words(choice).c_str());
  return false;
}

bool take_vmdk(cmdline_options& options, const std::string& value, argument_list& args) {
  options.vmdk_mode = true;
  return parse_source_options(options, value, "-vmdk", args);
}

constexpr source_option source_options[] = {
    {"-livesys", false, take_live_system},
    {"-extract", true, take_extract},
    {"-hive", true, take_hive},
    {"-vss", true, take_shadow_copy},
    {"-image", true, take_image},
    {"-vmdk", true, take_vmdk},
};

bool take_source(cmdline_options& options, argument_list& args) {
  for (const source_option& source : source_options) {
    std::string value;
    const bool present =
        source.has_value ? take_option(source.name, value, args) : take_flag(source.name, args);
    if (present) return source.effect(options, value, args);
  }
  return true;
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
  if (take_option("-memfile", value, args)) {
    options.memfile_mode = true;
    options.source_path = value;
  }
  options.pipe_binary_mode = take_flag("-pipe_binary", args);
  if (!options.pipe_binary_mode && !take_source(options, args)) return false;
  options.raw_mode = options.extract_mode;
  options.inc_slack = take_flag("-inc_slack", args);
  options.sort_by_name = take_flag("-sort_by_name", args);
  return true;
}

}  // namespace ovrik
