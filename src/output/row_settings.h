// What the row writers read of the options of a run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "output/lv_time.h"

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

/// The characters that replace a separator inside a text: `from` becomes `to`; 0 for none.
struct separator_pair {
  char from = 0;
  char to = 0;
};

struct row_settings {
  std::string csv_separator = " | ";
  separator_pair sub_separators{'|', ';'};
  bool tight_csv = false;   ///< no padding to the columns' widths
  bool pad_columns = true;  ///< a blank in front of a time
  bool hex_numbers = true;
  bool quoted_csv = false;
  bool pair_datetime = false;
  date_time_writer time_format;

  bool form_xml = false;
  bool form_csv = false;
  bool form_l2t = false;
  bool form_csvgen = false;
  bool form_bodyfile = false;
  bool form_multiline = false;

  /// A header is due in front of the next row; cleared when it was written.
  bool emit_row_header = true;
  std::vector<field_cell> columns;  ///< the column header of the running section

  std::string program_name;
  std::string user_name;
  std::string host_name;
  std::string artifact_title;  ///< title of the running section; empty for raw data
  std::string hive_location;   ///< where the hive of the running section came from

  /// Other names to print for `hive_location`, by its lower-cased text or by a part of its text.
  std::map<std::string, std::string> alias_files;
  std::map<std::string, std::string> alias_paths;
};

/// Makes `text` the separator and chooses the characters that take its place inside a text: a pipe
/// becomes a semicolon, a comma a blank, anything else stays. "tab" and "\\t" mean a TAB.
void set_csv_separator(row_settings& settings, const std::string& text);

/// True for the two forms of fixed records, whose header comes once for the whole stream.
bool has_stream_header(const row_settings& settings);

/// `hive_location` under the name that the aliases give it.
std::string aliased_hive_location(const row_settings& settings);

/// Rewrites the line ends of `text` as "[CRLF]", "[LFCR]", "[LF]", or "[CR]" if it has no LF at
/// all; a CR that touches no LF stays in a text with an LF.
void escape_line_ends(std::string& text);

}  // namespace ovrik
