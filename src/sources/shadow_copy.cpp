#include "sources/shadow_copy.h"

#include <string_view>

#include "base/text.h"

namespace ovrik {

namespace {

constexpr std::string_view prefix = shadow_copy_prefix;

// "\\.\snapid_" and 36 characters
constexpr size_t snapshot_mark_at = 4;
constexpr std::string_view snapshot_mark = "snapid_";
constexpr size_t snapshot_path_at = 47;

/// `path` from the first backslash on that stands at `from` or behind it; all of it without one.
std::string from_backslash(const std::string& path, size_t from) {
  const size_t at = path.find('\\', from);
  return at == std::string::npos ? path : path.substr(at);
}

}  // namespace

std::string shadow_copy_device(const std::string& text) {
  const size_t at = text.find(prefix);
  if (at == std::string::npos) return shadow_copy_prefix + text;
  const size_t number_at = at + prefix.size();
  return shadow_copy_prefix + text.substr(number_at, text.find('\\', number_at) - number_at);
}

std::string without_shadow_copy(const std::string& path) {
  const std::string lower = lower_ascii(path);
  if (lower.starts_with(lower_ascii(prefix))) return from_backslash(path, prefix.size());
  if (lower.starts_with("\\\\.\\") && path.size() > snapshot_path_at &&
      lower.compare(snapshot_mark_at, snapshot_mark.size(), snapshot_mark) == 0) {
    return from_backslash(path, snapshot_path_at);
  }
  return path;
}

}  // namespace ovrik
