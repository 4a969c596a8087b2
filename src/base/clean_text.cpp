#include "base/clean_text.h"

#include <algorithm>
#include <cstdint>

#include "base/utf8.h"

namespace ovrik {

namespace {

constexpr uint32_t first_picture = 0x2400;
constexpr uint32_t picture_of_delete = 0x2421;

/// Characters that nothing shows, and that change how what stands around them is shown.
struct code_range {
  uint32_t first;
  uint32_t last;
};

constexpr code_range replaced_ranges[] = {
    {0x0080, 0x009F},  // C1 controls
    {0x2028, 0x202E},  // line and paragraph separator, embeddings and overrides
    {0x2066, 0x2069},  // isolates
    {0xD800, 0xDFFF},  // halves of surrogate pairs
};

uint32_t shown_code(uint32_t code) {
  if (code == '\t') return code;
  if (code < 0x20) return first_picture + code;
  if (code == 0x7F) return picture_of_delete;
  const bool replaced =
      std::any_of(std::begin(replaced_ranges), std::end(replaced_ranges),
                  [code](const code_range& r) { return code >= r.first && code <= r.last; });
  return replaced ? replacement_character : code;
}

bool is_plain(char c) { return c >= 0x20 && c < 0x7F; }

std::string cleaned(std::string_view text, bool keep_line_feeds) {
  if (std::all_of(text.begin(), text.end(), is_plain)) return std::string(text);
  std::string clean;
  clean.reserve(text.size() + text.size() / 4);
  for (size_t at = 0; at < text.size();) {
    if (is_plain(text[at]) || (keep_line_feeds && text[at] == '\n')) {
      clean += text[at++];
      continue;
    }
    char bytes[4];
    const char* end = put_utf8(bytes, shown_code(take_utf8(text, at)));
    clean.append(bytes, static_cast<size_t>(end - bytes));
  }
  return clean;
}

/// True for a byte of a character that is not its first.
bool is_tail(char c) { return (static_cast<uint8_t>(c) & 0xC0U) == 0x80U; }

}  // namespace

std::string clean_text(std::string_view text) { return cleaned(text, false); }

std::string clean_lines(std::string_view text) { return cleaned(text, true); }

std::string_view first_characters(std::string_view text, size_t most_bytes) {
  if (text.size() <= most_bytes) return text;
  while (most_bytes > 0 && is_tail(text[most_bytes])) --most_bytes;
  return text.substr(0, most_bytes);
}

std::string_view last_characters(std::string_view text, size_t most_bytes) {
  if (text.size() <= most_bytes) return text;
  size_t at = text.size() - most_bytes;
  while (at < text.size() && is_tail(text[at])) ++at;
  return text.substr(at);
}

}  // namespace ovrik
