#include "base/utf16.h"

#include "base/utf8.h"

namespace ovrik {

namespace {

/// Copies the ASCII units at the start of `count` UTF-16LE units to `out`; returns their number.
size_t ascii_units(const uint8_t* units, size_t count, char* out) {
  size_t i = 0;
  for (; i < count && units[2 * i] < 0x80 && units[2 * i + 1] == 0; ++i) {
    out[i] = static_cast<char>(units[2 * i]);
  }
  return i;
}

}  // namespace

bool utf16_to_utf8(std::string& out, byte_view units) {
  const size_t count = units.size() / 2;
  // Most paths are ASCII, and of them each unit is a byte.
  out.resize(count);
  const size_t ascii = ascii_units(units.data(), count, out.data());
  if (ascii == count) return true;

  out.resize(ascii + (count - ascii) * most_utf8_bytes_per_unit);
  char* end = out.data() + ascii;
  bool whole = true;
  for (size_t i = ascii; i < count; ++i) {
    uint32_t code = units.u16_at(2 * i);
    if (is_high_surrogate(code)) {
      const uint32_t low = units.u16_at(2 * (i + 1));
      whole = i + 1 < count && is_low_surrogate(low);
      if (!whole) break;
      code = joined_surrogates(code, low);
      ++i;
    }
    end = put_utf8(end, code);
  }
  out.resize(static_cast<size_t>(end - out.data()));
  return whole;
}

std::string utf16_text(byte_view bytes) {
  const uint8_t* units = bytes.data();
  const size_t most = bytes.size() / 2;
  size_t count = 0;
  while (count < most && (units[2 * count] != 0 || units[2 * count + 1] != 0)) ++count;
  std::string text;
  utf16_to_utf8(text, bytes.clip(0, 2 * count));  // a broken pair cuts the text there
  return text;
}

}  // namespace ovrik
