// What the Shim Cache rows read of the options of a run.
#pragma once

#include <cstdint>
#include <string>

#include "output/row_settings.h"

namespace ovrik {

struct shim_settings : row_settings {
  bool raw_mode = false;      ///< list the entries' places, not their contents
  bool sort_by_name = false;  ///< rows by path; otherwise by entry number
  bool inc_slack = false;     ///< slack joins the value, and rows tell which came from it
  bool section_headers = true;
  std::string section_text;      ///< heading due in front of the first row; empty once written
  uint64_t reg_update_time = 0;  ///< FILETIME: last write of the value's key; 0 for raw data
};

}  // namespace ovrik
