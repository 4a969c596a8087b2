#include "hive/hive_patch.h"

#include <algorithm>
#include <iterator>

namespace ovrik {

void hive_patch::put(uint64_t offset, byte_view bytes) {
  if (bytes.empty()) return;
  const uint64_t end = offset + bytes.size();
  auto piece = m_pieces.upper_bound(offset);
  if (piece != m_pieces.begin()) --piece;
  while (piece != m_pieces.end() && piece->first < end) {
    const auto [place, old] = *piece;
    if (place + old.size() > end) m_pieces.emplace(end, old.from(end - place));
    if (place < offset) {
      piece->second = old.clip(0, offset - place);
      ++piece;
    } else {
      piece = m_pieces.erase(piece);
    }
  }
  m_pieces.emplace(offset, bytes);
}

void hive_patch::apply(uint64_t offset, uint8_t* buffer, size_t size) const {
  auto piece = m_pieces.upper_bound(offset);
  if (piece != m_pieces.begin()) --piece;
  for (; piece != m_pieces.end() && piece->first < offset + size; ++piece) {
    const uint64_t begin = std::max(offset, piece->first);
    const byte_view part = piece->second.from(begin - piece->first).clip(0, offset + size - begin);
    std::copy_n(part.data(), part.size(), buffer + (begin - offset));
  }
}

uint64_t hive_patch::end_behind(uint64_t size) const {
  for (const auto& [place, bytes] : m_pieces) {
    if (place > size) break;
    size = std::max(size, place + bytes.size());
  }
  return size;
}

}  // namespace ovrik
