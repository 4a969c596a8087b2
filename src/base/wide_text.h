// Between the UTF-8 text of this program and the UTF-16 names of Windows, which need not be valid
// UTF-16: what goes there and back is the same.
#pragma once

#include <string>
#include <string_view>

namespace ovrik {

/// `units` as UTF-8. A surrogate without its other half becomes the three bytes that it would have
/// as a code point, so that `widen` brings it back.
std::string narrow(std::u16string_view units);

/// UTF-8 `text` as UTF-16, the three bytes of a lone surrogate as that surrogate. A byte that
/// belongs to no such form becomes U+FFFD.
std::u16string widen(std::string_view text);

}  // namespace ovrik
