// Other names for hives in the results.
#pragma once

#include <map>
#include <string>

namespace ovrik {

struct hive_aliases {
  std::map<std::string, std::string> files;  ///< by whole paths, in lower case
  std::map<std::string, std::string> parts;  ///< by parts of paths

  /// The path of a hive as the results show it: the other name of the whole path or, without one,
  /// the path with the first occurrence of each part replaced, in the order of the parts.
  std::string shown(const std::string& path) const;
};

/// Adds the pairs "path|alias|path|alias..." for whole paths, which are looked up without regard to
/// case. Of two pairs for one path the first stays. False: the number of parts is odd, which
/// `words` says.
bool add_file_aliases(hive_aliases& aliases, const std::string& pairs, std::string& words);

/// Adds the pairs "part|alias..." for parts of paths, without a separator at the end of either and
/// without double quotes in the alias; a lone part gets the alias "*". As above otherwise.
bool add_path_aliases(hive_aliases& aliases, const std::string& pairs, std::string& words);

}  // namespace ovrik
