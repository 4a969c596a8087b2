// What goes with the opening of a hive, wherever it lies.
#pragma once

#include "base/diagnostics_log.h"
#include "sources/host/read_faults.h"

namespace ovrik {

/// Both of the references are used for as long as the hive is.
struct hive_opening {
  diagnostics_log& log;    ///< what there is to tell of the way to the hive
  read_faults& faults;     ///< what of the evidence cannot be read
  bool with_logs = false;  ///< what its transaction logs hold is laid over it
};

}  // namespace ovrik
