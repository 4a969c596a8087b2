// A row of typed cells, laid out as padded text, as delimited fields or as one line per cell.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output/field_cell.h"
#include "output/row_writer.h"

namespace ovrik {

/// The cells of one row under the columns of the running section. `style` is ORed into each cell
/// that the row receives.
struct field_row {
  explicit field_row(const row_writer& writer)
      : style(writer.settings().quoted_csv ? field_cell::quote : 0),
        cells(writer.columns().size()) {}

  uint32_t style;
  std::vector<field_cell> cells;  ///< as many as there are columns
};

/// Sets a number or FILETIME and returns how many column places it takes: 2 for
/// `cell_kind::time_pair`, else 1. A column at or beyond the row's count is ignored.
size_t row_set_number(field_row& row, size_t column, uint64_t value, cell_kind kind,
                      uint32_t style = 0);

/// Sets a text. With the quote style it shows in double quotes, unless it begins with an opening
/// brace and a double quote. A column at or beyond the row's count is ignored.
void row_set_text(field_row& row, size_t column, const std::string& text, uint32_t style = 0);

/// Writes one row under the columns of the running section.
void write_row(row_writer& writer, const field_row& row);

}  // namespace ovrik
