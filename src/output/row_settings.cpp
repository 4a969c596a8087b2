#include "output/row_settings.h"

#include "base/text.h"

namespace ovrik {

form_facts facts_of(row_form form) {
  switch (form) {
    case row_form::csv:
    case row_form::csvgen:
      return {.header_once = false, .has_headings = true, .one_line = true};
    case row_form::l2t:
      return {.header_once = true, .has_headings = false, .one_line = true};
    case row_form::bodyfile:
      return {.header_once = true, .has_headings = true, .one_line = true};
    case row_form::padded:
    case row_form::xml:
    case row_form::multiline:
      break;
  }
  return {.header_once = false, .has_headings = true, .one_line = false};
}

bool escapes_line_ends(const row_settings& settings) {
  return settings.csvgen_given || facts_of(settings.form).one_line;
}

void set_csv_separator(row_settings& settings, const std::string& text) {
  const std::string lower = lower_ascii(text);
  const bool is_tab = !settings.quoted_csv && (lower == "tab" || lower == "\\t");
  settings.csv_separator = is_tab ? "\t" : text;
}

}  // namespace ovrik
