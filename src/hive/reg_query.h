// Values by the path of a key.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "base/byte_view.h"
#include "hive/read_allowance.h"
#include "hive/reg_clas.h"

namespace ovrik {

/// One answer of a value query.
struct reg_hit {
  uint64_t last_write_time = 0;  ///< FILETIME of the key
  byte_view data;
  byte_view data_and_slack;  ///< and what the segments of a big value hold behind the data
};

/// Is given one answer, whose bytes it has until it returns.
using hit_visitor = std::function<void(const reg_hit& hit)>;

/// Visits the values that a path leads to. The path begins below the key at the absolute position
/// `nk_offset`. If the whole path is a key, its values are the hits; otherwise those values of the
/// key in front of the last segment whose name it is, A to Z taken as a to z. Values that cannot be
/// read are left out, as are those behind the end of the allowance. False: there are no hits.
bool query_values(const reg_hive& hive, uint32_t nk_offset, std::span<const std::string_view> path,
                  read_allowance& allowance, const hit_visitor& visit);

}  // namespace ovrik
