#include "base/text.h"
#include "base/windows_api_win32.h"
#include "sources/host/host_path.h"

namespace ovrik {

char host_separator() { return '\\'; }

std::string without_trailing_separators(std::string_view path) {
  // A path of nothing but separators is the root folder.
  const size_t last = path.find_last_not_of("\\/");
  return std::string(last == std::string_view::npos ? path.substr(0, 1) : path.substr(0, last + 1));
}

std::string without_stream_name(std::string_view path) {
  const bool has_drive = path.size() > 1 && path[1] == ':';
  const size_t separator = path.find_last_of("\\/");
  const size_t name = separator != std::string_view::npos ? separator + 1 : has_drive ? 2 : 0;
  const size_t colon = path.find(':', name);
  // One at the end is that of a drive's device.
  return std::string(path.substr(0, colon + 1 < path.size() ? colon : path.size()));
}

std::string as_written(std::string_view path) {
  const size_t separator = path.find_last_of("\\/");
  const size_t last = path.find_last_not_of(". ");
  const bool has_name = last != path.npos && (separator == path.npos || last > separator);
  const bool is_cut = has_name && !path.starts_with("\\\\?\\");
  return std::string(is_cut ? path.substr(0, last + 1) : path);
}

std::string last_component(std::string_view path) {
  size_t separator = path.rfind('\\');
  if (separator == std::string_view::npos) separator = path.rfind('/');
  return std::string(path.substr(separator + 1));
}

std::string make_absolute_path(std::string_view text) {
  std::string path = trim(text);
  remove_all(path, '"');
  path = trim(path);
  if (path.empty()) return path;
  const std::wstring wide = to_wide(path);
  const DWORD size = GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);
  std::wstring full(size, L'\0');
  const DWORD length = GetFullPathNameW(wide.c_str(), size, full.data(), nullptr);
  if (length == 0 || length >= size) return path;
  full.resize(length);
  return from_wide(full);
}

std::string with_host_separators(std::string path) {
  replace_all(path, '/', '\\');
  return path;
}

}  // namespace ovrik
