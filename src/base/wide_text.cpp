#include "base/wide_text.h"

#include <cstddef>
#include <cstdint>

#include "base/utf8.h"

namespace ovrik {

namespace {

constexpr uint32_t replacement = 0xFFFD;

/// How a code point is written in UTF-8: the number of bytes behind the first one, what marks the
/// first one, and the least code point that is written so.
struct utf8_form {
  unsigned tail;
  uint32_t mark;
  uint32_t mask;
  uint32_t least;
};

constexpr utf8_form utf8_forms[] = {
    {0, 0x00, 0x80, 0},
    {1, 0xC0, 0xE0, 0x80},
    {2, 0xE0, 0xF0, 0x800},
    {3, 0xF0, 0xF8, 0x10000},
};

/// The code point that begins at `at`, which moves behind it; U+FFFD for a byte that begins none.
uint32_t next_code(std::string_view text, size_t& at) {
  const auto byte_at = [text](size_t place) { return static_cast<uint8_t>(text[place]); };
  const size_t first = at++;
  for (const utf8_form& form : utf8_forms) {
    if ((byte_at(first) & form.mask) != form.mark) continue;
    if (text.size() - first <= form.tail) break;
    uint32_t code = byte_at(first) & ~form.mask;
    bool whole = true;
    for (size_t i = 1; i <= form.tail; ++i) {
      whole = whole && (byte_at(first + i) & 0xC0U) == 0x80U;
      code = code << 6 | (byte_at(first + i) & 0x3FU);
    }
    if (!whole || code < form.least || code > 0x10FFFF) break;
    at = first + form.tail + 1;
    return code;
  }
  return replacement;
}

}  // namespace

std::string narrow(std::u16string_view units) {
  std::string text(units.size() * most_utf8_bytes_per_unit, '\0');
  char* end = text.data();
  for (size_t i = 0; i < units.size(); ++i) {
    uint32_t code = units[i];
    if (is_high_surrogate(code) && i + 1 < units.size() && is_low_surrogate(units[i + 1])) {
      code = joined_surrogates(code, units[++i]);
    }
    end = put_utf8(end, code);
  }
  text.resize(static_cast<size_t>(end - text.data()));
  return text;
}

std::u16string widen(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const uint32_t code = next_code(text, at);
    if (code < 0x10000) {
      units += static_cast<char16_t>(code);
    } else {
      units += static_cast<char16_t>(0xD800U + ((code - 0x10000U) >> 10));
      units += static_cast<char16_t>(0xDC00U + ((code - 0x10000U) & 0x3FFU));
    }
  }
  return units;
}

}  // namespace ovrik
