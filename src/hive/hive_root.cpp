#include "hive/hive_root.h"

#include "hive/reg_key.h"

namespace ovrik {

namespace {

struct telling_subkey {
  const char* subkey;
  const char* hive_name;
};

constexpr telling_subkey telling_subkeys[] = {
    {"Select", "System"},    {"control panel", "ntuser.dat"},
    {"Classes", "Software"}, {"local settings", "usrclass.dat"},
    {"sam", "SAM"},          {"RXACT", "Security"},
    {"root", "AmCache.bin"},
};

}  // namespace

bool find_root(const reg_hive& hive, uint32_t& root_offset, std::string& name) {
  if (!hive.usable()) return false;
  root_offset = hive.root_offset();
  name = hive.stored_name();
  for (const telling_subkey& telling : telling_subkeys) {
    if (!name.empty()) break;
    if (has_subkey(hive, root_offset, telling.subkey)) name = telling.hive_name;
  }
  return true;
}

}  // namespace ovrik
