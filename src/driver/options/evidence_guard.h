// Keeps a run from writing to its own evidence.
#pragma once

#include <string>

#include "driver/options/option_scan.h"

namespace ovrik {

/// True if `path` is not a file that the arguments left in `args` name, under whatever name or
/// link. False: it is one, which has been said on standard error.
bool is_free_of_evidence(const std::string& path, const argument_list& args);

}  // namespace ovrik
