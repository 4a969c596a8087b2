#include "driver/stdin_stream.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "driver/host/host_console.h"

namespace uni {

stdin_stream::stdin_stream() { ovrik::set_binary_input(); }

bool stdin_stream::next_line(std::string& line) {
  std::array<char, 4096> buffer{};
  line.clear();
  if (std::fgets(buffer.data(), static_cast<int>(buffer.size()), stdin) == nullptr) return false;
  line = buffer.data();
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  if (m_at_start && line.starts_with(byte_order_mark)) line.erase(0, byte_order_mark.size());
  m_at_start = false;
  while (line.ends_with('\n') || line.ends_with('\r')) line.pop_back();
  return true;
}

}  // namespace uni
