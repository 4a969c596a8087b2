#include "sources/host/windows_path.h"

#include "base/drive_letter.h"
#include "base/text.h"

namespace ovrik::windows_path {

namespace {

constexpr std::string_view long_prefix = "\\\\?\\";
constexpr std::string_view device_prefix = "\\\\.\\";
constexpr std::string_view share_prefix = "\\\\";
constexpr std::string_view separators = "\\/";

/// Where the last name of the path begins.
size_t name_start(std::string_view path) { return path.find_last_of(separators) + 1; }

/// The path from the root on. The last name is not handed to the system, which would cut the full
/// stops and blanks at its end.
std::string full_path_with_end(const std::string& path, full_path_call full_path) {
  if (!loses_its_end(path)) return full_path(path);
  std::string folder = full_path(folder_of(path));
  if (!folder.ends_with('\\')) folder += '\\';
  return folder + path.substr(name_start(path));
}

}  // namespace

std::string without_trailing_separators(std::string_view path) {
  const size_t last = path.find_last_not_of(separators);
  return std::string(path.substr(0, last == std::string_view::npos ? 1 : last + 1));
}

std::string without_stream_name(std::string_view path) {
  const bool is_on_drive = name_start(path) == 0 && begins_with_drive(path);
  const size_t colon = path.find(':', is_on_drive ? 2 : name_start(path));
  return std::string(path.substr(0, colon + 1 < path.size() ? colon : path.size()));
}

std::string as_written(std::string_view path) {
  const size_t end = path.find_last_not_of(". ") + 1;  // 0 if there is nothing else
  const bool is_cut = end > name_start(path) && !path.starts_with(long_prefix);
  return std::string(is_cut ? path.substr(0, end) : path);
}

bool loses_its_end(std::string_view path) {
  const std::string_view name = path.substr(name_start(path));
  return (name.ends_with('.') || name.ends_with(' ')) && name != "." && name != "..";
}

std::string last_component(std::string_view path) {
  size_t separator = path.rfind('\\');
  if (separator == std::string_view::npos) separator = path.rfind('/');
  return std::string(path.substr(separator + 1));
}

std::string folder_of(std::string_view path) {
  const size_t name = name_start(path);
  return std::string(name == 0 ? "." : path.substr(0, name));
}

std::string with_backslashes(std::string path) {
  replace_all(path, '/', '\\');
  return path;
}

bool is_pipe(const std::string& path) {
  const std::string name = lower_ascii(with_backslashes(path));
  const size_t share =
      name.find('\\', share_prefix.size());  // behind ".", "?" or a computer's name
  return name.starts_with(share_prefix) && share != std::string::npos &&
         name.substr(share).starts_with("\\pipe\\");
}

bool names_other_host(std::string_view path) {
  constexpr std::string_view native_prefix = "\\??\\";
  const std::string name = with_backslashes(std::string(path));
  for (const std::string_view prefix : {long_prefix, device_prefix, native_prefix}) {
    if (!name.starts_with(prefix)) continue;
    const std::string_view rest = std::string_view(name).substr(prefix.size());
    return !begins_with_drive(rest) || !is_drive_letter(rest.front());
  }
  return name.starts_with(share_prefix);
}

std::vector<std::string> folders_down_to(std::string_view path) {
  const std::string name = with_backslashes(without_trailing_separators(path));
  std::vector<std::string> folders;
  // A prefix stays together with the part that it belongs to.
  size_t start = name.starts_with(share_prefix) ? long_prefix.size() : 1;
  size_t end = 0;
  do {
    end = name.find('\\', start);
    folders.push_back(name.substr(0, end));
    start = end + 1;
  } while (end != std::string::npos);
  return folders;
}

std::string stream_suffix(std::string_view found) {
  if (found == "::$DATA") return {};
  return std::string(found.substr(0, found.rfind(":$DATA")));
}

std::string strip_long_prefix(const std::string& path) {
  constexpr size_t longest_plain_path = 46;
  if (path.size() <= long_prefix.size() || !path.starts_with(long_prefix)) return path;
  const std::string lower = lower_ascii(path);
  const bool is_device =
      path.size() > longest_plain_path && lower.find("global") != std::string::npos;
  const bool is_share = lower.starts_with("\\\\?\\unc\\");
  return is_device || is_share ? path : path.substr(long_prefix.size());
}

std::string long_form(const std::string& path, full_path_call full_path) {
  const bool is_full = path.size() > 2 && begins_with_drive(path) &&
                       separators.find(path[2]) != std::string_view::npos;
  std::string full = with_backslashes(is_full ? path : full_path_with_end(path, full_path));
  if (full.starts_with(long_prefix) || full.starts_with(device_prefix)) return full;
  const std::string prefix(long_prefix);
  return full.starts_with(share_prefix) ? prefix + "UNC" + full.substr(1) : prefix + full;
}

}  // namespace ovrik::windows_path
