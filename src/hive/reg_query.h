// Values by the path of a key.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hive/reg_clas.h"

namespace ovrik {

/// One answer of a value query.
struct reg_hit {
  uint64_t last_write_time = 0;  ///< FILETIME of the key
  std::vector<uint8_t> data;
  std::vector<uint8_t> slack;  ///< what the segments of a big value hold behind the data
};

/// Collects the values that a path leads to. `segments` names the hive first and then key by key;
/// a second segment "CurrentControlSet" stands for the current control set. If the whole path is a
/// key, its values are the hits; otherwise those values of the key in front of the last segment
/// whose name it is, A to Z taken as a to z. Values that cannot be read are left out, as are those
/// behind the one with which all data together exceed the hive by 256 MiB. False: there are no
/// hits.
bool query_values(const reg_hive& hive, const std::vector<std::string>& segments,
                  std::vector<reg_hit>& hits);

}  // namespace ovrik
