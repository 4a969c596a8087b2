#include "base/number_text.h"

#include <charconv>
#include <limits>

#include "base/text.h"

namespace ovrik {

namespace {

/// The whole of `digits` as a number in `base`; false if it is empty or holds anything else.
bool parse_digits(std::string_view digits, int base, uint64_t& value) {
  uint64_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
  if (error != std::errc() || stop != end) return false;
  value = number;
  return true;
}

bool parse_signed_decimal(std::string_view text, uint64_t& value) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  uint64_t magnitude = 0;
  if (!parse_digits(text, 10, magnitude)) return false;
  value = negative ? 0 - magnitude : magnitude;
  return true;
}

std::string number_text(uint64_t value, int base, size_t min_digits) {
  char digits[std::numeric_limits<uint64_t>::digits10 + 1];
  const auto result = std::to_chars(std::begin(digits), std::end(digits), value, base);
  const std::string_view text(digits, static_cast<size_t>(result.ptr - digits));
  std::string padded;
  append_padded_left(padded, text, min_digits, '0');
  return padded;
}

}  // namespace

bool parse_u64(std::string_view text, uint64_t& value) {
  const std::string number = lower_ascii(trim(text));
  const std::string_view view = number;
  if (const size_t x = view.find('x'); x != std::string_view::npos) {
    return parse_digits(view.substr(x + 1), 16, value);
  }
  if (const size_t o = view.find('o'); o != std::string_view::npos) {
    return parse_digits(view.substr(o + 1), 8, value);
  }
  return parse_signed_decimal(view, value);
}

bool parse_u32(std::string_view text, uint32_t& value) {
  const std::string number = lower_ascii(trim(text));
  const std::string_view view = number;
  if (view.size() == 3 && view.front() == '\'' && view.back() == '\'') {
    value = static_cast<unsigned char>(view[1]);
    return true;
  }
  uint64_t wide = 0;
  bool parsed = false;
  if (view.starts_with("0x")) {
    parsed = parse_digits(view.substr(2), 16, wide);
  } else if (view.starts_with('x')) {
    parsed = parse_digits(view.substr(1), 16, wide);
  } else if (view.starts_with('o')) {
    parsed = parse_digits(view.substr(1), 8, wide);
  } else {
    parsed = parse_signed_decimal(view, wide);
  }
  // A negative number wraps within 32 bits, as it does within 64 in `parse_u64`.
  const bool fits = wide <= std::numeric_limits<uint32_t>::max() ||
                    (view.starts_with('-') && 0 - wide <= std::numeric_limits<uint32_t>::max());
  if (!parsed || !fits) return false;
  value = static_cast<uint32_t>(wide);
  return true;
}

std::string decimal_text(uint64_t value, size_t min_digits) {
  return number_text(value, 10, min_digits);
}

std::string hex_text(uint64_t value, size_t min_digits) {
  return number_text(value, 16, min_digits);
}

}  // namespace ovrik
