#include <cstdio>

#include "driver/live_system.h"

namespace ovrik {

bool find_live_hive(std::string& /*path*/) {
  std::fputs("this host has no running Windows to read\n", stderr);
  return false;
}

bool check_shadow_copies() {
  std::fputs("shadow copies are reached through a running Windows, which this host has not\n",
             stderr);
  return false;
}

}  // namespace ovrik
