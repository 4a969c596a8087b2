#include "shim/shim_cache.h"

#include "base/text.h"

namespace ovrik {

std::string path_key(const shim_cache_entry& entry) {
  std::string key = lower_ascii(entry.path_raw);
  if (entry.path_had_prefix) key.erase(key.find(native_prefix), native_prefix.size());
  return key;
}

}  // namespace ovrik
