// Texts in fields: none breaks its field or its row, whatever the evidence holds.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "output/row_settings.h"

namespace ovrik {

/// How line ends inside a text show.
enum class line_ends_as {
  names,     ///< "[CRLF]", "[LFCR]", "[LF]", "[CR]"
  pictures,  ///< as all control characters do
};

/// Appends texts to rows under one separator, as `clean_text` makes them and without the separator:
/// of its characters the one that marks it shows as something else. A pipe becomes a semicolon, a
/// TAB its control picture, a blank an underscore, and any other character, a comma too, a blank.
class field_text {
 public:
  explicit field_text(std::string_view separator);

  /// Appends `text` as a field without quotes.
  void append(std::string& row, std::string_view text, line_ends_as ends) const;

  /// Appends `text` as a field in double quotes; those in it are doubled. The separator may stand
  /// in it, unless it is a TAB.
  void append_quoted(std::string& row, std::string_view text, line_ends_as ends) const;

 private:
  /// The bytes that a text may have without being looked at any closer.
  using byte_set = std::array<bool, 256>;

  std::string m_mark;  ///< one character of the separator that no text may have
  std::string m_replacement;
  byte_set m_plain{};
  byte_set m_plain_in_quotes{};
};

}  // namespace ovrik
