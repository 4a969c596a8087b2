// One typed cell of a row, or the name of a column.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ovrik {

/// What a cell or a column holds.
enum class cell_kind : uint16_t {
  none = 0,
  number32 = 4,
  number64 = 8,
  text = 11,
  time_pair = 12,    ///< FILETIME shown in two columns, date then time
  time_joined = 13,  ///< FILETIME shown in one column
  time_header = 24,  ///< header of a time column: has a blank in front
};

/// One column header or one cell of a row.
struct field_cell {
  static constexpr uint32_t quote = 0x00008000;           ///< quote the text
  static constexpr uint32_t blank_zero = 0x04000000;      ///< show a blank if the number is 0
  static constexpr uint32_t always_decimal = 0x40000000;  ///< whatever `hex_numbers` says

  cell_kind kind = cell_kind::none;
  uint32_t style = 0;   ///< the bits above
  size_t width = 0;     ///< in bytes; 0 for none
  std::string text;     ///< column name or text value
  uint64_t number = 0;  ///< number or FILETIME
};

}  // namespace ovrik
