#include "hive/hive_root.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"
#include "hive/reg_key.h"

namespace ovrik {

namespace {

constexpr std::string_view telling_subkeys[] = {
    "Select", "control panel", "Classes", "local settings", "sam", "RXACT", "root",
};
constexpr const char* hive_names[] = {
    "System", "ntuser.dat", "Software", "usrclass.dat", "SAM", "Security", "AmCache.bin",
};
static_assert(std::size(telling_subkeys) == std::size(hive_names));

}  // namespace

bool find_root(const reg_hive& hive, uint32_t& root_offset, std::string& name) {
  if (!hive.usable()) return false;
  root_offset = hive.root_offset();
  name = hive.stored_name();
  if (!name.empty()) return true;
  read_allowance allowance(hive.size());
  const std::vector<bool> found = has_subkeys(hive, root_offset, telling_subkeys, allowance);
  const auto first = std::find(found.begin(), found.end(), true);
  if (first != found.end()) name = hive_names[first - found.begin()];
  return true;
}

bool is_system_hive(const reg_hive& hive) {
  uint32_t root_offset = 0;
  std::string kind_name;
  return find_root(hive, root_offset, kind_name) &&
         lower_ascii(kind_name).find("system") != std::string::npos;
}

}  // namespace ovrik
