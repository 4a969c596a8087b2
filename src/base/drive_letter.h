// The drive that a path of Windows begins with.
#pragma once

#include <string_view>

namespace ovrik {

constexpr bool is_drive_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// True if `path` begins with a drive: one character of any kind and a colon, as Windows sees it.
constexpr bool begins_with_drive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':';
}

}  // namespace ovrik
