// The commands that a run has for a SYSTEM hive: which keys to ask for the cache, and what becomes
// of the answers.
#pragma once

#include <string>

#include "driver/hive_opening.h"
#include "driver/options/hive_aliases.h"
#include "hive/reg_clas.h"
#include "output/row_writer.h"
#include "shim/shim_settings.h"

namespace ovrik {

/// Where the caches of hives go, and what a run asks of them.
struct hive_output {
  row_writer& writer;
  const shim_settings& shim;
  const hive_aliases& aliases;
  hive_opening opening;
  bool all_controlsets = false;
  bool names_hives = false;  ///< headings name the hive
  bool show_progress = true;
  std::string extract_path;  ///< a value's bytes go to this file instead; empty for none
};

enum class hive_outcome {
  found,            ///< a key of a cache is there; it need not hold rows
  nothing_found,    ///< none is
  cut_short,        ///< its lists name more than a hive of its size can hold, which has been said
  no_control_sets,  ///< all were asked for, and the hive has none or does not tell the current one
};

/// Writes the caches of an open SYSTEM hive, those of the current control set or of all. The hive
/// came from `location`. Lists that name more than the hive can hold end there, and a line on
/// standard error says so. A failed write of an extracted value fails the stream of rows.
hive_outcome print_hive(const hive_output& output, const reg_hive& hive,
                        const std::string& location);

}  // namespace ovrik
