#include <cstdlib>

#include "driver/host/environment.h"

namespace ovrik {

bool environment_value(const std::string& name, std::string& value) {
  const char* found = std::getenv(name.c_str());
  if (found == nullptr) return false;
  value = found;
  return true;
}

}  // namespace ovrik
