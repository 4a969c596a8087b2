// The root of a hive, and what kind of hive it is.
#pragma once

#include <cstdint>
#include <string>

#include "hive/reg_clas.h"

namespace ovrik {

/// Tells the absolute position of the root cell and the name of the hive: the name in the base
/// block or, if that is empty, the one that the root's subkeys tell; it may stay empty. False, with
/// the results kept: the hive is not usable.
bool find_root(const reg_hive& hive, uint32_t& root_offset, std::string& name);

/// True if the name of the hive is that of a SYSTEM hive.
bool is_system_hive(const reg_hive& hive);

}  // namespace ovrik
