#include "output/field_row.h"

#include "base/number_text.h"
#include "base/text.h"
#include "output/field_text.h"

namespace ovrik {

namespace {

/// True for a text that brings its own quotes.
bool is_quoted_already(const std::string& text) {
  return text.size() > 2 && text.starts_with("{\"");
}

/// Lays the cells of one row out into a line.
class row_line {
 public:
  row_line(const field_row& row, const row_writer& writer)
      : m_row(row),
        m_settings(writer.settings()),
        m_texts(writer.texts()),
        m_columns(writer.columns()) {}

  std::string text() {
    const size_t count = m_row.cells.size();
    for (size_t column = 0; column < count; ++column) {
      begin_cell(column);
      column += append_cell(column) - 1;
      end_cell(column + 1 == count);
    }
    m_line += '\n';
    return std::move(m_line);
  }

 private:
  size_t width_of(size_t column) const {
    return m_settings.tight_csv ? 0 : m_columns[column].width;
  }

  void begin_cell(size_t column) {
    if (m_settings.form != row_form::multiline) return;
    const field_cell& name = m_columns[column];
    append_padded_right(m_line, name.text, name.width);
  }

  void end_cell(bool last) {
    if (m_settings.form == row_form::multiline) {
      m_line += '\n';
    } else if (!last) {
      m_line += m_settings.csv_separator;
    }
  }

  /// Appends the cell at `column` and returns how many column places it took.
  size_t append_cell(size_t column) {
    const field_cell& cell = m_row.cells[column];
    switch (cell.kind) {
      case cell_kind::text:
        append_text(cell, width_of(column));
        break;
      case cell_kind::number32:
      case cell_kind::number64:
        append_number(cell, width_of(column));
        break;
      case cell_kind::time_pair:
        return append_time_pair(cell, column);
      case cell_kind::time_joined:
        append_time_joined(cell, width_of(column));
        break;
      case cell_kind::none:
      case cell_kind::time_header:
        break;
    }
    return 1;
  }

  void append_text(const field_cell& cell, size_t width) {
    const size_t begin = m_line.size();
    const line_ends_as ends =
        escapes_line_ends(m_settings) ? line_ends_as::names : line_ends_as::pictures;
    if ((cell.style & field_cell::quote) != 0 && !is_quoted_already(cell.text)) {
      m_texts.append_quoted(m_line, cell.text, ends);
    } else {
      m_texts.append(m_line, cell.text, ends);
    }
    pad(begin, width);
  }

  /// Makes what stands in the line from `begin` on `width` bytes long.
  void pad(size_t begin, size_t width) {
    const size_t length = m_line.size() - begin;
    if (length < width) m_line.append(width - length, ' ');
  }

  void append_number(const field_cell& cell, size_t width) {
    if ((cell.style & field_cell::blank_zero) != 0 && cell.number == 0) {
      append_padded_right(m_line, blank(), width);
    } else if ((cell.style & field_cell::always_decimal) != 0 || !m_settings.hex_numbers) {
      append_padded_left(m_line, decimal_text(cell.number), width, ' ');
    } else {
      m_line += "0x" + hex_text(cell.number, width >= 2 ? width - 2 : 8);
    }
  }

  void append_time_joined(const field_cell& cell, size_t width) {
    decode(cell);
    if (m_settings.pad_columns) m_line += ' ';
    append_padded_right(m_line, m_date + ' ' + m_time, width);
  }

  size_t append_time_pair(const field_cell& cell, size_t column) {
    decode(cell);
    append_padded_right(m_line, m_date, width_of(column));
    if (column + 1 == m_row.cells.size()) return 1;
    end_cell(false);
    begin_cell(column + 1);
    if (m_settings.pad_columns) m_line += ' ';
    append_padded_right(m_line, m_time, width_of(column + 1));
    return 2;
  }

  /// The date and time of a cell, with blanks in place of an invalid one.
  void decode(const field_cell& cell) {
    time_value value;
    decode_filetime(value, cell.number);
    format_date_time(m_date, m_time, value, m_settings.time_format);
    if (value.valid) return;
    m_date = blank();
    m_time = blank();
  }

  std::string blank() const { return m_settings.tight_csv ? "" : " "; }

  const field_row& m_row;
  const row_settings& m_settings;
  const field_text& m_texts;
  const std::vector<field_cell>& m_columns;
  std::string m_line;
  std::string m_date;
  std::string m_time;
};

}  // namespace

size_t row_set_number(field_row& row, size_t column, uint64_t value, cell_kind kind,
                      uint32_t style) {
  if (column < row.cells.size()) {
    field_cell& cell = row.cells[column];
    cell.kind = kind;
    cell.style = style | row.style;
    cell.number = value;
  }
  return kind == cell_kind::time_pair ? 2 : 1;
}

void row_set_text(field_row& row, size_t column, const std::string& text, uint32_t style) {
  if (column >= row.cells.size()) return;
  field_cell& cell = row.cells[column];
  cell.kind = cell_kind::text;
  cell.style = style | row.style;
  cell.text = text;
}

void write_row(row_writer& writer, const field_row& row) {
  writer.out() << row_line(row, writer).text();
}

}  // namespace ovrik
