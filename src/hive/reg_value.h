// Values of a key: vk cells and their data, which may be resident, in a cell or in segments ("db").
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/byte_view.h"
#include "hive/read_allowance.h"
#include "hive/reg_clas.h"

namespace ovrik {

/// One value. A listed cell that is no vk has no name and no cell.
struct reg_value {
  byte_view vk;                ///< from the vk cell to the hive's end
  uint32_t data_position = 0;  ///< absolute; for a resident value its four bytes themselves
  std::string name() const;    ///< UTF-8, or the bytes as stored

  /// True if `name` is the value's name, A to Z taken as a to z.
  bool is_named(std::string_view name) const;
};

/// The data of a value and the rest of the segments that carried them. The bytes point into the
/// hive or, of a big value, into `joined`.
struct value_bytes {
  value_bytes() = default;
  value_bytes(const value_bytes&) = delete;
  value_bytes& operator=(const value_bytes&) = delete;

  byte_view data;
  byte_view data_and_slack;
  std::vector<uint8_t> joined;
};

/// Is given one value; returns whether to go on.
using value_visitor = std::function<bool(const reg_value& value)>;

/// Visits the values of the key at the absolute position `nk_offset` in the order of the hive;
/// entries that lead out of the hive, or stand behind the end of the allowance, are left out.
/// False: no such key, or it has no values.
bool enum_values(const reg_hive& hive, uint32_t nk_offset, read_allowance& allowance,
                 const value_visitor& visit);

/// Finds the first value of exactly that name, its case included. False, with `value` kept: none.
bool find_value(const reg_hive& hive, uint32_t nk_offset, std::string_view name,
                read_allowance& allowance, reg_value& value);

/// Tells the data of a value. Data of 16 MiB and more, and resident data of more than four bytes,
/// give none; data and slack together are no more than 16 MiB. False: the value is no vk or an
/// implausible one, its data cell does not lie inside the hive, or the allowance is used up.
bool read_value_data(const reg_hive& hive, const reg_value& value, read_allowance& allowance,
                     value_bytes& bytes);

}  // namespace ovrik
