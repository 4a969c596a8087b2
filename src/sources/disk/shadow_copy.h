// Names of Volume Shadow Copies, as a running Windows gives them.
#pragma once

#include <string>

namespace ovrik {

/// The device path of a shadow copy without its number.
std::string shadow_copy_prefix();

/// The device path of the shadow copy that `value` names: a number, or a pasted device path with or
/// without a path behind it.
std::string shadow_copy_device(const std::string& value);

/// `path` without the shadow copy's device that it begins with, so that the result begins with a
/// backslash. A device is named by its device path, or by "\\.\snapid_" and an identifier of 36
/// characters. Any other path stays as it is, and so does one without a backslash behind the
/// device.
std::string without_shadow_copy_device(const std::string& path);

}  // namespace ovrik
