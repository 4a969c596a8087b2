// Environment variables in paths.
#pragma once

#include <string>

namespace ovrik {

/// Replaces each "%NAME%" in `path` by the variable's value, starting over behind each replacement,
/// for at most 64 of them. Without a variable of that name "%vss%" is the device path of a shadow
/// copy without its number. Names without a value stay, and so do paths of more than 512 bytes.
std::string expand_path_variables(std::string path);

}  // namespace ovrik
