#include "base/byte_view.h"

#include <algorithm>
#include <cstring>

namespace ovrik {

bool byte_view::text_at(uint64_t offset, std::string_view text) const {
  return has(offset, text.size()) && std::memcmp(m_data + offset, text.data(), text.size()) == 0;
}

std::optional<size_t> byte_view::find(std::string_view text, uint64_t offset) const {
  while (has(offset, text.size())) {
    const size_t starts = m_size - static_cast<size_t>(offset) - text.size() + 1;
    const void* hit = std::memchr(m_data + offset, text.front(), starts);
    if (hit == nullptr) return std::nullopt;
    const auto at = static_cast<size_t>(static_cast<const uint8_t*>(hit) - m_data);
    if (text_at(at, text)) return at;
    offset = at + 1;
  }
  return std::nullopt;
}

std::string byte_view::text() const { return std::string(begin(), end()); }

size_t byte_view::units_before_nul() const {
  const size_t most = m_size / 2;
  size_t count = 0;
  while (count < most && (m_data[2 * count] != 0 || m_data[2 * count + 1] != 0)) ++count;
  return count;
}

size_t byte_view::copy_ascii_units(char* out, size_t count) const {
  count = std::min(count, m_size / 2);
  size_t i = 0;
  for (; i < count && m_data[2 * i] < 0x80 && m_data[2 * i + 1] == 0; ++i) {
    out[i] = static_cast<char>(m_data[2 * i]);
  }
  return i;
}

void byte_view::append_to(std::vector<uint8_t>& bytes) const {
  bytes.insert(bytes.end(), m_data, m_data + m_size);
}

void byte_view::copy_to(std::span<uint8_t> room) const {
  std::copy_n(m_data, std::min(m_size, room.size()), room.begin());
}

}  // namespace ovrik
