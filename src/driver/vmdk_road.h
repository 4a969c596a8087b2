// The road of a virtual disk: one hive, read out of a chain of VMDK files.
#pragma once

#include <cstdint>

#include "driver/opened_source.h"
#include "driver/registry_commands.h"

namespace ovrik {

/// Writes the caches of the hive on an opened virtual disk. Returns the exit value: -1 only if no
/// volume can be mounted.
int32_t run_vmdk_road(opened_source& source, const hive_output& output);

}  // namespace ovrik
