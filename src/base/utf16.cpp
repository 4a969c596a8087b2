#include "base/utf16.h"

namespace ovrik {

namespace {

bool is_high_surrogate(uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_surrogate(uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// Appends the UTF-8 form of a code point of at most 0x10FFFF.
void append_utf8(std::string& out, uint32_t code) {
  const auto put = [&out](uint32_t byte) { out += static_cast<char>(byte); };
  const auto put_tail = [&put, code](unsigned shift) { put(0x80U | (code >> shift & 0x3FU)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0U | code >> 6);
    put_tail(0);
  } else if (code < 0x10000) {
    put(0xE0U | code >> 12);
    put_tail(6);
    put_tail(0);
  } else {
    put(0xF0U | code >> 18);
    put_tail(12);
    put_tail(6);
    put_tail(0);
  }
}

}  // namespace

bool utf16_to_utf8(std::string& out, byte_view units) {
  const size_t count = units.size() / 2;
  out.clear();
  out.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    uint32_t code = units.u16_at(2 * i);
    if (is_high_surrogate(code)) {
      const uint32_t low = units.u16_at(2 * (i + 1));
      if (i + 1 == count || !is_low_surrogate(low)) return false;
      code = 0x10000U + ((code - 0xD800U) << 10) + (low - 0xDC00U);
      ++i;
    }
    append_utf8(out, code);
  }
  return true;
}

std::string utf16_text(byte_view bytes) {
  size_t count = 0;
  while (count < bytes.size() / 2 && bytes.u16_at(2 * count) != 0) ++count;
  std::string text;
  utf16_to_utf8(text, bytes.clip(0, 2 * count));  // a broken pair cuts the text there
  return text;
}

}  // namespace ovrik
