// UTF-16LE text of evidence to UTF-8.
#pragma once

#include <string>

#include "base/byte_view.h"

namespace ovrik {

/// Empties `out` and fills it with the UTF-8 form of the UTF-16LE `units`; an odd last byte is
/// left out. A lone low surrogate goes out as its three bytes. False: a high surrogate without a
/// low one behind it; `out` then holds what stands in front of it.
bool utf16_to_utf8(std::string& out, byte_view units);

/// The UTF-16LE text in `bytes` as UTF-8: up to the first NUL unit, the first broken surrogate
/// pair or the last whole unit.
std::string utf16_text(byte_view bytes);

}  // namespace ovrik
