// The split of text for a console of Windows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace uni {

/// An old console takes no more than some 32 KiB at once.
constexpr size_t largest_console_piece = 0x2000;

/// How many bytes of the UTF-8 `text` a console gets next: all of them, or at most
/// `largest_console_piece` that end between characters. Bytes that are no UTF-8 are cut anywhere.
size_t console_piece(std::span<const uint8_t> text);

}  // namespace uni
