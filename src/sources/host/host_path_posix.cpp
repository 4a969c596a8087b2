#include <filesystem>
#include <system_error>

#include "sources/host/host_path.h"

namespace ovrik {

char host_separator() { return '/'; }

std::string without_trailing_separators(std::string_view path) {
  // A path of nothing but separators is the root folder.
  const size_t last = path.find_last_not_of('/');
  return std::string(last == std::string_view::npos ? path.substr(0, 1) : path.substr(0, last + 1));
}

std::string without_stream_name(std::string_view path) { return std::string(path); }

std::string as_written(std::string_view path) { return std::string(path); }

std::string last_component(std::string_view path) {
  return std::string(path.substr(path.rfind('/') + 1));
}

std::string full_path(const std::string& path) {
  if (path.starts_with('/')) return path;
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::current_path(error);
  return error ? path : (folder / path).string();
}

bool names_other_host(std::string_view /*path*/) { return false; }

std::string with_host_separators(std::string path) { return path; }

}  // namespace ovrik
