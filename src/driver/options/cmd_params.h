// The options of a run: one object, of which every layer sees the part that it reads.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/diagnostics_log.h"
#include "driver/options/file_filter.h"
#include "shim/shim_settings.h"

namespace ovrik {

/// Options that a family of tools has in common.
struct cmd_params : shim_settings, diagnostics_log {
  std::string command_line;  ///< all arguments, joined
  std::string out_path;
  std::string date_format = "yyyy-mm-dd";
  std::string time_format_text = "hh:mm:ss.xxx";
  bool out_file_given = false;
  bool show_progress = true;
  bool profile = false;
  std::string signal_name;

  bool pipe_mode = false;
  bool enumdir_mode = false;
  std::string enumdir_path;
  uint32_t num_subdirs = 0;
  std::vector<file_filter> filters;
  bool start_time_on = false;
  uint64_t start_filetime = 0;
  bool stop_time_on = false;
  uint64_t stop_filetime = 0;
};

/// Options of the registry command layer.
struct registry_cmd_parameters : cmd_params {
  bool multi_source = false;  ///< many hives in one run: headings name the hive
  bool all_controlsets = false;
};

/// Options of this program: the run mode and its source.
struct cmdline_options : registry_cmd_parameters {
  bool pipe_binary_mode = false;
  bool binary_mode = false;
  bool memfile_mode = false;
  bool vss_mode = false;
  bool vmdk_mode = false;
  bool image_mode = false;
  bool extract_mode = false;
  bool hive_mode = false;
  bool livesys_mode = false;
  std::string source_path;     ///< UTF-8; the list roads rewrite it for every line
  uint64_t volume_offset = 0;  ///< in bytes
  std::vector<std::string> vmdk_files;
};

}  // namespace ovrik
