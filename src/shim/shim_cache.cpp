#include "shim/shim_cache.h"

#include "base/text.h"
#include "base/utf16.h"

namespace ovrik {

std::string path_raw(const shim_cache_entry& entry) { return utf16_text(entry.path); }

std::string path_key(const shim_cache_entry& entry) {
  std::string key = lower_ascii(path_raw(entry));
  if (const size_t at = key.find(native_prefix); at != std::string::npos) {
    key.erase(at, native_prefix.size());
  }
  return key;
}

}  // namespace ovrik
