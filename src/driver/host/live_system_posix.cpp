#include "driver/host/console.h"
#include "driver/host/live_system.h"

namespace ovrik {

bool find_live_hive(std::string& /*path*/) {
  print_message("this host has no running Windows to read\n");
  return false;
}

bool check_shadow_copies() {
  print_message("shadow copies are reached through a running Windows, which this host has not\n");
  return false;
}

}  // namespace ovrik
