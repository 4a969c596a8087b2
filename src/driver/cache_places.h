// Where a SYSTEM hive keeps its caches.
#pragma once

#include <string_view>

namespace ovrik {

/// Where the cache stands below a control set, its last part the value's name.
struct cache_place {
  const char* title;
  std::string_view path[4];
};
constexpr cache_place cache_places[] = {
    {"WinXP Shim Cache", {"Control", "Session Manager", "AppCompatibility", "AppCompatCache"}},
    {"Shim Cache", {"Control", "Session Manager", "AppCompatCache", "AppCompatCache"}},
};

}  // namespace ovrik
