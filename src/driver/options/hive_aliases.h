// Other names for hives in the results.
#pragma once

#include <string>

#include "output/row_settings.h"

namespace ovrik {

/// Adds the pairs "path|alias|path|alias..." for whole paths, which are looked up without regard to
/// case. Of two pairs for one path the first stays. False: the number of parts is odd, which has
/// been said on standard error.
bool add_file_aliases(row_settings& settings, const std::string& pairs);

/// Adds the pairs "part|alias..." for parts of paths, without a separator at the end of either and
/// without double quotes in the alias; a lone part gets the alias "*". As above otherwise.
bool add_path_aliases(row_settings& settings, const std::string& pairs);

}  // namespace ovrik
