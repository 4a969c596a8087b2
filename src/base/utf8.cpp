#include "base/utf8.h"

namespace ovrik {

namespace {

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

}  // namespace

uint32_t take_utf8(std::string_view text, size_t& at) {
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
  return replacement_character;
}

}  // namespace ovrik
