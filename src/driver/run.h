// One run of the program.
#pragma once

#include <cstdint>

#include "driver/options/option_scan.h"

namespace ovrik {

/// Does what the arguments (UTF-8, the program path first) ask for. Returns the exit value, 0 or
/// -1.
int32_t run(argument_list args);

}  // namespace ovrik
