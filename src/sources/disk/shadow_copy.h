// Names of Volume Shadow Copies, as a running Windows gives them.
#pragma once

#include <string>

namespace ovrik {

/// The device path of a shadow copy without its number.
std::string shadow_copy_prefix();

/// The device path of the shadow copy that `value` names: a number, or a pasted device path with or
/// without a path behind it.
std::string shadow_copy_device(const std::string& value);

/// `path` from the first backslash behind a shadow copy's device on: its device path, or
/// "\\.\snapid_" with an identifier of 36 characters. Any other path stays, and so does one without
/// such a backslash.
std::string without_shadow_copy_device(const std::string& path);

}  // namespace ovrik
