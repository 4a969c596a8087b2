#include "base/utf16.h"

#include "base/utf8.h"

namespace ovrik {

bool utf16_to_utf8(std::string& out, byte_view units) {
  const size_t count = units.size() / 2;
  // Most paths are ASCII, and of them each unit is a byte.
  out.resize(count);
  const size_t ascii = units.copy_ascii_units(out.data(), count);
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
  std::string text;
  utf16_to_utf8(text, bytes.clip(0, 2 * bytes.units_before_nul()));  // a broken pair cuts it there
  return text;
}

}  // namespace ovrik
