#include "output/field_text.h"

#include <algorithm>
#include <cstdint>

#include "base/clean_text.h"
#include "base/utf8.h"
#include "output/line_ends.h"

namespace ovrik {

namespace {

constexpr const char* picture_of_tab = "\xE2\x90\x89";

/// The character that tells the separator from blanks around it; a blank if it has no other.
std::string mark_of(std::string_view separator) {
  for (const char common : {'|', ','}) {
    if (separator.find(common) != std::string_view::npos) return {common};
  }
  const size_t at = separator.find_first_not_of(' ');
  if (at == std::string_view::npos) return separator.empty() ? "" : " ";
  size_t end = at;
  take_utf8(separator, end);
  return std::string(separator.substr(at, end - at));
}

std::string replacement_of(std::string_view mark) {
  if (mark == "|") return ";";
  if (mark == "\t") return picture_of_tab;
  return mark == " " ? "_" : " ";
}

void replace_all_of(std::string& text, std::string_view from, std::string_view to) {
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at)) {
    text.replace(at, from.size(), to);
    at += to.size();
  }
}

std::string shown(std::string_view text, line_ends_as ends) {
  if (ends == line_ends_as::pictures) return clean_text(text);
  std::string named(text);
  escape_line_ends(named);
  return clean_text(named);
}

}  // namespace

field_text::field_text(std::string_view separator)
    : m_mark(mark_of(separator)), m_replacement(replacement_of(m_mark)) {
  for (unsigned byte = 0x20; byte < 0x7F; ++byte) m_plain[byte] = m_plain_in_quotes[byte] = true;
  for (const char c : m_mark) m_plain[static_cast<uint8_t>(c)] = false;
  m_plain_in_quotes['"'] = false;
}

void field_text::append(std::string& row, std::string_view text, line_ends_as ends) const {
  const auto is_plain = [this](char c) { return m_plain[static_cast<uint8_t>(c)]; };
  if (std::all_of(text.begin(), text.end(), is_plain)) {
    row += text;
    return;
  }
  std::string field = shown(text, ends);
  if (!m_mark.empty()) replace_all_of(field, m_mark, m_replacement);
  row += field;
}

void field_text::append_quoted(std::string& row, std::string_view text, line_ends_as ends) const {
  const auto is_plain = [this](char c) { return m_plain_in_quotes[static_cast<uint8_t>(c)]; };
  row += '"';
  if (std::all_of(text.begin(), text.end(), is_plain)) {
    row += text;
  } else {
    std::string field = shown(text, ends);
    replace_all_of(field, "\"", "\"\"");
    if (m_mark == "\t") replace_all_of(field, m_mark, m_replacement);
    row += field;
  }
  row += '"';
}

}  // namespace ovrik
