#include "sources/fileio.h"

#include <algorithm>

namespace uni {

bool read_whole(std::vector<uint8_t>& bytes, const std::string& path, size_t max_bytes) {
  bytes.clear();
  fileio file;
  if (!file.open_read(path)) return false;
  size_t size = static_cast<size_t>(std::min<uint64_t>(file.length(), max_bytes));
  bytes.resize(size);
  const bool read = size != 0 && file.read_at(bytes.data(), size, 0);
  bytes.resize(read ? size : 0);
  return !bytes.empty();
}

}  // namespace uni
