// The section of the results that a cache belongs to.
#pragma once

#include <cstdint>
#include <string>

namespace ovrik {

/// What is known of the place that a cache came from.
struct cache_section {
  std::string title;          ///< of the section; empty for a raw value
  std::string hive_location;  ///< where the hive lies, under the name that is shown
  uint64_t key_time = 0;      ///< FILETIME: last write of the value's key; 0 for a raw value
};

}  // namespace ovrik
