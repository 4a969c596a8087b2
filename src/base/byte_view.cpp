#include "base/byte_view.h"

#include <cstring>

namespace ovrik {

bool byte_view::text_at(uint64_t offset, std::string_view text) const {
  return has(offset, text.size()) && std::memcmp(m_data + offset, text.data(), text.size()) == 0;
}

std::string byte_view::text() const { return std::string(m_data, m_data + m_size); }

}  // namespace ovrik
