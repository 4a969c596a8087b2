#include "driver/host/console.h"
#include "driver/host/live_system.h"
#include "driver/host/windows_facts.h"

namespace ovrik {

namespace {

/// True for an administrator with full rights. False: prints `words` and what to do.
bool check_rights(const char* words) {
  if (have_admin_rights(running_windows())) return true;
  print_message("%s", words);
  print_message("need to restart cmd prompt using \"Run As Administrator\" option...\n");
  return false;
}

}  // namespace

bool find_live_hive(std::string& path) {
  if (!check_rights("command prompt not running w/ admin privileges...\n")) return false;
  if (!running_windows().system_folder(path)) return false;
  path += "\\config\\system";
  return true;
}

bool check_shadow_copies() { return check_rights("This option requires admin privileges...\n"); }

}  // namespace ovrik
