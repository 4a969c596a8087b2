#include "sources/host/console_pieces.h"

namespace uni {

size_t console_piece(std::span<const uint8_t> text) {
  constexpr size_t longest_character = 4;
  if (text.size() <= largest_console_piece) return text.size();
  const auto is_inside_character = [text](size_t at) { return (text[at] & 0xC0U) == 0x80U; };
  size_t end = largest_console_piece;
  while (end > largest_console_piece - longest_character && is_inside_character(end)) --end;
  return end;
}

}  // namespace uni
