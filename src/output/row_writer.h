// The stream of rows: what stands in front of them, and what is still to be written of it.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "output/field_cell.h"
#include "output/field_text.h"
#include "output/row_settings.h"

namespace ovrik {

/// Writes rows to a stream. A heading and a header line wait until the first row comes, so that a
/// section without rows leaves nothing behind. A new writer owes a header in every form.
class row_writer {
 public:
  row_writer(std::ostream& out, const row_settings& settings)
      : m_out(out), m_settings(settings), m_texts(settings.csv_separator) {}

  const row_settings& settings() const { return m_settings; }
  const field_text& texts() const { return m_texts; }
  std::ostream& out() { return m_out; }

  /// Starts a section. `heading`, without its last line end, replaces one that no row came for; a
  /// form without headings drops it. A header is due again, unless the form has one in all.
  void begin_section(const std::string& heading);

  /// Writes the heading, if it is still due.
  void write_heading();

  /// True if a header is due in front of the next row; from then on it is not.
  bool take_due_header();

  /// True if the columns of the section are still to be told, by `set_columns`.
  bool needs_columns() const { return m_header_due && !facts_of(m_settings.form).header_once; }

  /// Makes `columns` those of the section, and writes their header line, which the multi-line form
  /// does not have: there each row has the columns' names in it.
  void set_columns(std::vector<field_cell> columns);

  /// The columns of the running section; none in the forms of fixed records.
  const std::vector<field_cell>& columns() const { return m_columns; }

 private:
  std::ostream& m_out;
  const row_settings& m_settings;
  field_text m_texts;
  std::string m_heading;
  bool m_header_due = true;
  std::vector<field_cell> m_columns;
};

}  // namespace ovrik
