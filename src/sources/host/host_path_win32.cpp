#include "base/windows_api_win32.h"
#include "sources/host/host_path.h"
#include "sources/host/windows_path.h"

namespace ovrik {

char host_separator() { return '\\'; }

std::string without_trailing_separators(std::string_view path) {
  return windows_path::without_trailing_separators(path);
}

std::string without_stream_name(std::string_view path) {
  return windows_path::without_stream_name(path);
}

std::string as_written(std::string_view path) { return windows_path::as_written(path); }

std::string last_component(std::string_view path) { return windows_path::last_component(path); }

std::string full_path(const std::string& path) {
  const std::wstring wide = to_wide(path);
  const DWORD size = GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);  // with the terminator
  std::wstring full(size, L'\0');
  const DWORD length = GetFullPathNameW(wide.c_str(), size, full.data(), nullptr);
  if (length == 0 || length >= size) return path;
  full.resize(length);
  return from_wide(full);
}

bool names_other_host(std::string_view path) { return windows_path::names_other_host(path); }

std::string with_host_separators(std::string path) {
  return windows_path::with_backslashes(std::move(path));
}

}  // namespace ovrik
