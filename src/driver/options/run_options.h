// What the command line asks for. Built once from its text, constant from then on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "driver/options/date_window.h"
#include "driver/options/file_filter.h"
#include "driver/options/hive_aliases.h"
#include "driver/options/option_scan.h"
#include "output/row_settings.h"
#include "shim/shim_settings.h"

namespace ovrik {

/// A file that the run writes text to.
struct named_output {
  bool given = false;
  std::string path;  ///< UTF-8
};

/// The options that name one hive, directly or by what it lies in. The first that is there counts.
enum class source_kind { none, livesys, extract, hive, shadow_copy, image, vmdk };

struct source_options {
  source_kind kind = source_kind::none;
  std::string path;                ///< UTF-8; also of the file of -binary and -memfile
  uint64_t volume_offset = 0;      ///< in bytes; 0 for none
  bool ignore_image_size = false;  ///< a volume may reach further than the disk
  std::vector<std::string> vmdk_files;
};

/// Many sources: a list on the standard input or the files of a folder tree.
struct list_options {
  bool from_standard_input = false;
  bool from_folder = false;
  std::string folder;
  uint32_t num_subdirs = 0;  ///< levels of folders below `folder`
  std::vector<file_filter> filters;
  date_window window;
};

/// The ways through a run, in the order in which they are tried.
enum class run_road { pipe_binary, binary, memfile, hive, vmdk, list, none };

struct run_options {
  std::string command_line;  ///< all arguments, joined
  /// What the line names as sources, word by word, also where another one goes before it.
  std::vector<std::string> named_sources;
  argument_list unread;  ///< the program path and what no option took; may name evidence too
  run_road road = run_road::none;
  source_options source;
  list_options list;
  bool all_controlsets = false;
  bool with_logs = false;  ///< the transaction logs of hives are applied

  row_settings rows;
  shim_settings shim;
  hive_aliases aliases;
  named_output results;
  named_output diagnostics;

  bool show_progress = true;
  bool profile = false;     ///< the time that the run took is printed
  std::string signal_name;  ///< of an event that is raised at the end; empty for none
};

}  // namespace ovrik
