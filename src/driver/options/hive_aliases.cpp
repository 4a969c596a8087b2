#include "driver/options/hive_aliases.h"

#include <vector>

#include "base/text.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

/// The parts of a list of pairs. False: their number is odd, which `words` says.
bool split_pairs(const std::string& pairs, std::vector<std::string>& parts, std::string& words) {
  parts = split(pairs, '|');
  if (parts.size() % 2 == 0) return true;
  words += "imbalanced alias to true pathfiles, aborting\n";
  return false;
}

/// A path or alias without its last separator: the host's or, as aliases name places on Windows
/// machines too, a backslash.
std::string without_separator(std::string text) {
  if (!text.empty() && (text.back() == '\\' || text.back() == host_separator())) text.pop_back();
  return text;
}

}  // namespace

std::string hive_aliases::shown(const std::string& path) const {
  if (const auto whole = files.find(lower_ascii(path)); whole != files.end()) return whole->second;
  std::string location = path;
  for (const auto& [part, alias] : parts) {
    if (part.empty() || part.size() >= location.size()) continue;
    if (const size_t at = location.find(part); at != std::string::npos) {
      location.replace(at, part.size(), alias);
    }
  }
  return location;
}

bool add_file_aliases(hive_aliases& aliases, const std::string& pairs, std::string& words) {
  std::vector<std::string> parts;
  if (!split_pairs(pairs, parts, words)) return false;
  for (size_t i = 0; i < parts.size(); i += 2) {
    aliases.files.emplace(lower_ascii(parts[i]), parts[i + 1]);
  }
  return true;
}

bool add_path_aliases(hive_aliases& aliases, const std::string& pairs, std::string& words) {
  std::vector<std::string> parts;
  if (pairs.find('|') == std::string::npos) {
    parts = {pairs, "*"};
  } else if (!split_pairs(pairs, parts, words)) {
    return false;
  }
  for (size_t i = 0; i < parts.size(); i += 2) {
    std::string alias = without_separator(parts[i + 1]);
    remove_all(alias, '"');
    aliases.parts.emplace(without_separator(parts[i]), alias);
  }
  return true;
}

}  // namespace ovrik
