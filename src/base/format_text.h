// printf-style formatting into a string.
#pragma once

#include <cstdarg>
#include <string>

namespace ovrik {

/// The text that `format` and its arguments give; empty if the format cannot be followed.
std::string format_text(const char* format, va_list arguments)
    __attribute__((format(printf, 1, 0)));

}  // namespace ovrik
