// The road over one SYSTEM hive.
#pragma once

#include <cstdint>

#include "driver/opened_source.h"
#include "driver/registry_commands.h"

namespace ovrik {

/// Writes the caches of the hive that an opened source of this kind is or holds. Returns the exit
/// value.
int32_t run_hive_road(opened_source& source, source_kind kind, const hive_output& output);

}  // namespace ovrik
