#include "output/row_settings.h"

#include "base/text.h"

namespace ovrik {

void set_csv_separator(row_settings& settings, const std::string& text) {
  settings.csv_separator = text;
  settings.sub_separators = {};
  if (settings.quoted_csv) return;
  const std::string lower = lower_ascii(text);
  if (lower.find('|') != std::string::npos) {
    settings.sub_separators = {'|', ';'};
  } else if (lower.find(',') != std::string::npos) {
    settings.sub_separators = {',', ' '};
  } else if (lower == "tab" || lower == "\\t") {
    settings.csv_separator = "\t";
  }
}

bool has_stream_header(const row_settings& settings) {
  return settings.form_bodyfile || settings.form_l2t;
}

std::string aliased_hive_location(const row_settings& settings) {
  std::string location = settings.hive_location;
  if (const auto whole = settings.alias_files.find(lower_ascii(location));
      whole != settings.alias_files.end()) {
    return whole->second;
  }
  for (const auto& [part, alias] : settings.alias_paths) {
    if (part.empty() || part.size() >= location.size()) continue;
    if (const size_t at = location.find(part); at != std::string::npos) {
      location.replace(at, part.size(), alias);
    }
  }
  return location;
}

void escape_line_ends(std::string& text) {
  const bool has_lf = text.find('\n') != std::string::npos;
  if (!has_lf && text.find('\r') == std::string::npos) return;
  std::string escaped;
  for (size_t i = 0; i < text.size(); ++i) {
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (!has_lf) {
      escaped += text[i] == '\r' ? "[CR]" : std::string(1, text[i]);
    } else if (text[i] == '\r' && next == '\n') {
      escaped += "[CRLF]";
      ++i;
    } else if (text[i] == '\n' && next == '\r') {
      escaped += "[LFCR]";
      ++i;
    } else if (text[i] == '\n') {
      escaped += "[LF]";
    } else {
      escaped += text[i];
    }
  }
  text = std::move(escaped);
}

}  // namespace ovrik
