// Environment variables in paths.
#pragma once

#include <string>

namespace ovrik {

/// Replaces each "%NAME%" in `path` by the variable's value, starting over behind each replacement,
/// for at most 64 of them. Without a variable of that name "%vss%" is the device path of a shadow
/// copy without its number. Names without a value stay, and so do paths of more than 512 bytes.
std::string expand_path_variables(std::string path);

/// The path that a line of a list means: the line as it is if a file of that name can be read, else
/// with its variables replaced.
std::string path_of_list_line(const std::string& line);

}  // namespace ovrik
