#include "output/row_writer.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace ovrik {

namespace {

/// Makes the columns' names the labels of the lines that the multi-line form gives each cell.
void make_labels(std::vector<field_cell>& columns) {
  size_t longest = 0;
  for (field_cell& column : columns) {
    column.text += ':';
    longest = std::max(longest, column.text.size());
  }
  for (field_cell& column : columns) column.width = longest + 1;
}

std::string header_line(const std::vector<field_cell>& columns, const row_settings& settings) {
  std::string line;
  for (const field_cell& column : columns) {
    if (&column != &columns.front()) line += settings.csv_separator;
    const bool time =
        column.kind == cell_kind::time_joined || column.kind == cell_kind::time_header;
    if (time && settings.pad_columns) line += ' ';
    append_padded_right(line, column.text, settings.tight_csv ? 0 : column.width);
  }
  return line + '\n';
}

}  // namespace

void row_writer::begin_section(const std::string& heading) {
  const form_facts form = facts_of(m_settings.form);
  if (form.has_headings) m_heading = heading;
  if (!form.header_once) m_header_due = true;
}

void row_writer::write_heading() {
  if (m_heading.empty()) return;
  m_out << m_heading << '\n';
  m_heading.clear();
}

bool row_writer::take_due_header() { return std::exchange(m_header_due, false); }

void row_writer::set_columns(std::vector<field_cell> columns) {
  m_header_due = false;
  m_columns = std::move(columns);
  if (m_settings.form == row_form::multiline) {
    make_labels(m_columns);
  } else {
    m_out << header_line(m_columns, m_settings);
  }
}

}  // namespace ovrik
