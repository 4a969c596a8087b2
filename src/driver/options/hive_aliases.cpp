#include "driver/options/hive_aliases.h"

#include <vector>

#include "base/text.h"
#include "driver/host/console.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

/// The parts of a list of pairs. False: their number is odd, which is said.
bool split_pairs(const std::string& pairs, std::vector<std::string>& parts) {
  parts = split(pairs, '|');
  if (parts.size() % 2 == 0) return true;
  print_message("%s, aborting\n", "imbalanced alias to true pathfiles");
  return false;
}

/// A path or alias without its last separator: the host's or, as aliases name places on Windows
/// machines too, a backslash.
std::string without_separator(std::string text) {
  if (!text.empty() && (text.back() == '\\' || text.back() == host_separator())) text.pop_back();
  return text;
}

}  // namespace

bool add_file_aliases(row_settings& settings, const std::string& pairs) {
  std::vector<std::string> parts;
  if (!split_pairs(pairs, parts)) return false;
  for (size_t i = 0; i < parts.size(); i += 2) {
    settings.alias_files.emplace(lower_ascii(parts[i]), parts[i + 1]);
  }
  return true;
}

bool add_path_aliases(row_settings& settings, const std::string& pairs) {
  std::vector<std::string> parts;
  if (pairs.find('|') == std::string::npos) {
    parts = {pairs, "*"};
  } else if (!split_pairs(pairs, parts)) {
    return false;
  }
  for (size_t i = 0; i < parts.size(); i += 2) {
    std::string alias = without_separator(parts[i + 1]);
    remove_all(alias, '"');
    settings.alias_paths.emplace(without_separator(parts[i]), alias);
  }
  return true;
}

}  // namespace ovrik
