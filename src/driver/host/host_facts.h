// Facts about the machine that the program runs on, for the start-up header.
#pragma once

#include <string>

namespace ovrik {

struct host_facts {
  bool is_64_bit = false;
  std::string system_family;  ///< "Windows", or what the host calls itself
  std::string short_version;
  std::string full_version;
  std::string computer;
  std::string user;
  bool on_network_drive = false;    ///< the program file lies there
  bool on_removable_drive = false;  ///< the program file lies there
};

}  // namespace ovrik
