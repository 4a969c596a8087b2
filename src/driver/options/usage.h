// The help text.
#pragma once

#include <string>

namespace ovrik {

/// Prints the usage to standard error. `program_path` is the program's first argument.
void print_usage(const std::string& program_path);

}  // namespace ovrik
