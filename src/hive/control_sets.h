// The control sets of a SYSTEM hive: which exist, and which one is current.
#pragma once

#include <string>
#include <vector>

#include "hive/reg_clas.h"
#include "hive/reg_key.h"

namespace ovrik {

/// Finds the key of the current control set, whose number the Select key holds. The name is
/// "ControlSet00" and the number as it stands, not padded. False: no Select key, no number in it,
/// or no such key.
bool resolve_current_control_set(const reg_hive& hive, reg_key& key);

/// The names of all control sets as stored: the current one first, the others in the order of the
/// hive; if there is no current one all are in that order. False: no Select key, no number in it,
/// or no control set.
bool list_control_sets(const reg_hive& hive, std::vector<std::string>& names);

}  // namespace ovrik
