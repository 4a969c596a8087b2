// The running Windows as a source.
#pragma once

#include <string>

namespace ovrik {

/// Gives the path of the running system's SYSTEM hive. False: this run may not read it, or there is
/// no Windows that runs here, which has been said on standard error; or the system does not tell,
/// without a word.
bool find_live_hive(std::string& path);

/// True if this run may read shadow copies. False: it may not, or there is no Windows that runs
/// here; which has been said on standard error.
bool check_shadow_copies();

}  // namespace ovrik
