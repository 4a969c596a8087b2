// The control sets of a SYSTEM hive: which exist, and which one is current.
#pragma once

#include <vector>

#include "hive/read_allowance.h"
#include "hive/reg_clas.h"
#include "hive/reg_key.h"

namespace ovrik {

/// Finds the key of the current control set, whose number the Select key holds. The name is
/// "ControlSet00" and the number as it stands, not padded. False: no Select key, no number in it,
/// or no such key.
bool resolve_current_control_set(const reg_hive& hive, read_allowance& allowance, reg_key& key);

/// The keys of all control sets: the current one first, the others in the order of the hive; if
/// there is no current one all are in that order. A key that the root lists more than once counts
/// where it stands first. False: no Select key, no number in it, or no control set.
bool list_control_sets(const reg_hive& hive, read_allowance& allowance, std::vector<reg_key>& keys);

}  // namespace ovrik
