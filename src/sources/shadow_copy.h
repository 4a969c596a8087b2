// Names of Volume Shadow Copies, which the running Windows gives as devices.
#pragma once

#include <string>

namespace ovrik {

/// What stands before the number of a shadow copy in the name of its device.
constexpr const char* shadow_copy_prefix = "\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy";

/// The device that a user means: by its number, or by a name that was pasted, whatever stands
/// around it.
std::string shadow_copy_device(const std::string& text);

/// `path` from behind the shadow copy that it begins with: a device, or the identifier of a
/// snapshot. All of it if it begins with none, or if nothing follows.
std::string without_shadow_copy(const std::string& path);

}  // namespace ovrik
