#include "sources/host/host_path.h"

#include "base/text.h"

namespace ovrik {

std::string make_absolute_path(std::string_view text) {
  std::string path = trim(text);
  remove_all(path, '"');
  path = trim(path);
  return path.empty() ? path : full_path(path);
}

}  // namespace ovrik
