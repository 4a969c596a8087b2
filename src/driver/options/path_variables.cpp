#include "driver/options/path_variables.h"

#include "base/text.h"
#include "driver/host/environment.h"
#include "sources/disk/shadow_copy.h"
#include "sources/host/fileio.h"

namespace ovrik {

namespace {

constexpr size_t longest_path = 512;
constexpr int most_replacements = 64;  // a variable may hold its own name

/// The value of a name between two "%" signs. False: it has none.
bool find_value(const std::string& name, std::string& value) {
  if (environment_value(name, value)) return true;
  if (lower_ascii(name) != "vss") return false;
  value = shadow_copy_prefix();
  return true;
}

/// Replaces the first "%NAME%" that has a value. False: there is none.
bool replace_first_variable(std::string& path) {
  size_t open = path.find('%');
  while (open != std::string::npos) {
    const size_t close = path.find('%', open + 1);
    if (close == std::string::npos) return false;
    std::string value;
    if (find_value(path.substr(open + 1, close - open - 1), value)) {
      path.replace(open, close + 1 - open, value);
      return true;
    }
    open = path.find('%', close + 1);
  }
  return false;
}

}  // namespace

std::string expand_path_variables(std::string path) {
  if (path.size() > longest_path) return path;
  for (int i = 0; i < most_replacements && replace_first_variable(path); ++i) {
  }
  return path;
}

std::string path_of_list_line(const std::string& line) {
  const bool may_change = line.find('%') != std::string::npos;
  return may_change && !uni::file_opens(line) ? expand_path_variables(line) : line;
}

}  // namespace ovrik
