// The environment that the program was started in.
#pragma once

#include <string>

namespace ovrik {

/// Gives the value of an environment variable (UTF-8, names as the host compares them). False:
/// there is none of that name.
bool environment_value(const std::string& name, std::string& value);

}  // namespace ovrik
