#include "output/line_ends.h"

#include <utility>

namespace ovrik {

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
