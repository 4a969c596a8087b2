// SYSTEM hives with a shim cache in each control set.

#pragma once

#include "support/bytes.h"
#include "support/hive_builder.h"

namespace test_support {

struct control_set {
  uint32_t number = 1;
  bytes cache;
  bool old_key = false;  ///< the cache stands under "AppCompatibility", as in Windows XP
  uint64_t last_write = 0x01D8000000000000;  ///< of the key that holds the cache
};

/// "ControlSet001" and so on.
std::string control_set_name(uint32_t number);

/// Path of the key that holds the cache, below the root.
std::string cache_key_path(uint32_t number, bool old_key = false);

/// A hive with the select key, for which `current` need not be one of the sets, and the sets.
hive_builder system_hive(const std::vector<control_set>& sets, uint32_t current);

/// A hive of one control set, the current one, with this cache.
hive_builder system_hive_with(bytes cache);

}  // namespace test_support
