#include "base/wide_text.h"

#include <cstddef>
#include <cstdint>

#include "base/utf8.h"

namespace ovrik {

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
    const uint32_t code = take_utf8(text, at);
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
