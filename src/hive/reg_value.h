// Values of a key: vk cells and their data, which may be resident, in a cell or in segments ("db").
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/byte_view.h"
#include "hive/reg_clas.h"

namespace ovrik {

/// One value. A listed cell that is no vk has no name and no cell.
struct reg_value {
  byte_view vk;                ///< from the vk cell to the hive's end
  uint32_t data_position = 0;  ///< absolute; for a resident value its four bytes themselves
  std::string name() const;    ///< UTF-8, or the bytes as stored
};

/// The data of a value and the rest of the segments that carried them.
struct value_bytes {
  std::vector<uint8_t> data;
  std::vector<uint8_t> slack;
};

/// Is given one value; returns whether to go on.
using value_visitor = std::function<bool(const reg_value& value)>;

/// Visits the values of the key at the absolute position `nk_offset` in the order of the hive;
/// entries that lead out of the hive are left out. False: no such key, or it has no values.
bool enum_values(const reg_hive& hive, uint32_t nk_offset, const value_visitor& visit);

/// Finds the first value of exactly that name, its case included. False, with `value` kept: none.
bool find_value(const reg_hive& hive, uint32_t nk_offset, const std::string& name,
                reg_value& value);

/// Fills `bytes` with the data of a value. Data of 16 MiB and more, and resident data of more than
/// four bytes, give none. False: the value is no vk or an implausible one, or its data cell does
/// not lie inside the hive.
bool read_value_data(const reg_hive& hive, const reg_value& value, value_bytes& bytes);

}  // namespace ovrik
