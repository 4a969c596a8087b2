// What the row writers read of the options of a run. Built once, constant from then on.
#pragma once

#include <string>

#include "output/lv_time.h"

namespace ovrik {

/// The forms of output. What they have in common stands in `facts_of`.
enum class row_form {
  padded,     ///< text in padded columns
  csv,        ///< separated fields
  csvgen,     ///< separated fields, never padded
  l2t,        ///< log2timeline rows
  bodyfile,   ///< body-file rows, as `mactime` reads them
  xml,        ///< fields without any separator
  multiline,  ///< a line for every field
};

/// What sets one form apart from the others.
struct form_facts {
  bool header_once;   ///< one header for the whole stream, and no empty line behind a section
  bool has_headings;  ///< a heading stands in front of each section of a hive
  bool one_line;      ///< line ends inside a cell are rewritten, so that a row is one line
};

form_facts facts_of(row_form form);

struct row_settings {
  row_form form = row_form::padded;
  bool csvgen_given = false;  ///< also where a later option chose another form
  std::string csv_separator = " | ";
  bool tight_csv = false;   ///< no padding to the columns' widths
  bool pad_columns = true;  ///< a blank in front of a time
  bool hex_numbers = true;
  bool quoted_csv = false;
  bool pair_datetime = false;
  date_time_writer time_format;
  std::string program_name;
  std::string user_name;
  std::string host_name;
};

/// True if line ends inside a cell are rewritten.
bool escapes_line_ends(const row_settings& settings);

/// Makes `text` the separator. "tab" and "\\t" mean a TAB, unless fields are quoted.
void set_csv_separator(row_settings& settings, const std::string& text);

}  // namespace ovrik
