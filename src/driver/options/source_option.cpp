// The table of the options that name the source. The first that is present counts; the others stay
// unread.
#include "base/number_text.h"
#include "base/text.h"
#include "driver/options/option_reading.h"
#include "driver/options/path_variables.h"
#include "sources/disk/shadow_copy.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

struct source_option {
  const char* name;
  source_kind kind;
  bool has_value;
  option_effect effect;
};

bool take_live_system(option_reading& /*reading*/, const std::string& /*value*/) { return true; }

bool take_shadow_copy(option_reading& reading, const std::string& value) {
  reading.options.source.path = shadow_copy_device(value);
  return true;
}

bool take_extract(option_reading& reading, const std::string& value) {
  reading.options.source.path = value;
  return true;
}

bool take_hive(option_reading& reading, const std::string& value) {
  reading.options.source.path = expand_path_variables(value);
  return true;
}

bool take_image(option_reading& reading, const std::string& value) {
  source_options& source = reading.options.source;
  source.path = make_absolute_path(value);
  if (source.path.empty()) {
    reading.words += "prob understanding destination of " + value + " aborting\n,";
    return false;
  }
  source.ignore_image_size =
      source.volume_offset != 0 && take_flag("-ignore_image_size", reading.args);
  return true;
}

/// Takes the list of files ("a | b", also with commas or semicolons), one file from each further
/// -vmdk, and a further -offset.
bool take_vmdk(option_reading& reading, const std::string& list) {
  source_options& source = reading.options.source;
  source.vmdk_files = list_parts(list);
  std::string value;
  while (take_option("-vmdk", value, reading.args)) {
    remove_all(value, '"');
    source.vmdk_files.push_back(trim(value));
  }
  if (take_option("-offset", value, reading.args)) parse_u64(value, source.volume_offset);
  source.ignore_image_size =
      source.volume_offset != 0 && take_flag("-ignore_image_size", reading.args);
  return true;
}

constexpr source_option source_table[] = {
    {"-livesys", source_kind::livesys, false, take_live_system},
    {"-extract", source_kind::extract, true, take_extract},
    {"-hive", source_kind::hive, true, take_hive},
    {"-vss", source_kind::shadow_copy, true, take_shadow_copy},
    {"-image", source_kind::image, true, take_image},
    {"-vmdk", source_kind::vmdk, true, take_vmdk},
};

}  // namespace

bool read_source_option(option_reading& reading) {
  for (const source_option& option : source_table) {
    std::string value;
    const bool present = option.has_value ? take_option(option.name, value, reading.args)
                                          : take_flag(option.name, reading.args);
    if (!present) continue;
    reading.options.source.kind = option.kind;
    if (option.has_value) reading.options.named_sources.push_back(value);
    return option.effect(reading, value);
  }
  return true;
}

}  // namespace ovrik
