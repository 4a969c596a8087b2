// What the Shim Cache rows read of the options of a run, beside what all rows read.
#pragma once

namespace ovrik {

struct shim_settings {
  bool raw_mode = false;      ///< list the entries' places, not their contents
  bool sort_by_name = false;  ///< rows by path; otherwise by entry number
  bool inc_slack = false;     ///< slack joins the value, and rows tell which came from it
};

}  // namespace ovrik
