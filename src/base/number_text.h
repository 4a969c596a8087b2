// Numbers as option values and as row text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ovrik {

/// Reads a number of up to 64 bits: base 16 behind the first "x" anywhere in the text, else
/// base 8 behind the first "o", else base 10 with an optional sign (a negative number wraps).
/// False, with `value` kept: no such number, something behind it, or more than 64 bits.
bool parse_u64(std::string_view text, uint64_t& value);

/// Reads a number of up to 32 bits: base 16 behind a leading "0x" or "x", base 8 behind a leading
/// "o", else base 10 with an optional sign; 'c' in single quotes is the code of the character.
/// False, with `value` kept: as for `parse_u64`.
bool parse_u32(std::string_view text, uint32_t& value);

/// `value` in base 10, at least `min_digits` digits long (at most 20), filled with zeros.
std::string decimal_text(uint64_t value, size_t min_digits = 1);

/// `value` in lower-case base 16, at least `min_digits` digits long, filled with zeros.
std::string hex_text(uint64_t value, size_t min_digits = 1);

}  // namespace ovrik
