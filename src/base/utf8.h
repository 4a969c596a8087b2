// Code points between UTF-16 and UTF-8. Most is inline, for the rows of large caches.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ovrik {

/// What takes the place of a character that is none.
constexpr uint32_t replacement_character = 0xFFFD;

inline bool is_high_surrogate(uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
inline bool is_low_surrogate(uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// The code point of a high and a low surrogate.
inline uint32_t joined_surrogates(uint32_t high, uint32_t low) {
  return 0x10000U + ((high - 0xD800U) << 10) + (low - 0xDC00U);
}

/// The most bytes that `put_utf8` writes for one unit of UTF-16; a pair takes 4.
constexpr unsigned most_utf8_bytes_per_unit = 3;

/// Writes the UTF-8 form of a code point of at most 0x10FFFF and returns the place behind it.
inline char* put_utf8(char* out, uint32_t code) {
  const auto put = [&out](uint32_t byte) { *out++ = static_cast<char>(byte); };
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
  return out;
}

/// The code point that begins at `at`, which lies inside `text` and moves behind it. The three
/// bytes of a surrogate give that surrogate; a byte that begins no character gives U+FFFD.
uint32_t take_utf8(std::string_view text, size_t& at);

}  // namespace ovrik
