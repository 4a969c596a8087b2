// The road over many SYSTEM hives: a list on the standard input or a folder tree.
#pragma once

#include <cstdint>

#include "driver/options/run_options.h"
#include "driver/registry_commands.h"

namespace ovrik {

/// Writes the rows of every SYSTEM hive that the list or tree names, one after another; what is no
/// SYSTEM hive is passed over. Returns the exit value.
int32_t run_list_road(const list_options& list, const hive_output& output);

}  // namespace ovrik
