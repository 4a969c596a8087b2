// What the text of a Windows path says. No call of the system is made here, so that every host
// compiles and tests it. Paths are UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ovrik::windows_path {

/// `path` without the separators at its end; a path of nothing else keeps one.
std::string without_trailing_separators(std::string_view path);

/// `path` without the name of a stream, which is what follows a colon in its last part. The colon
/// of a drive and one at the end, which is that of a drive's device, stay.
std::string without_stream_name(std::string_view path);

/// `path` without the full stops and blanks at its end, which Windows cuts off when it makes a
/// file. It cuts none from a path with the long prefix, and a name of nothing else is left alone.
std::string as_written(std::string_view path);

/// True if the last name of `path` ends in full stops or blanks, so that Windows opens another file
/// unless the path has the long form.
bool loses_its_end(std::string_view path);

/// What follows the last backslash of `path`, without one the last "/", without both all of it.
std::string last_component(std::string_view path);

/// The folder that the last name of `path` lies in, with its separator; "." if `path` is a name
/// only.
std::string folder_of(std::string_view path);

/// `path` with backslashes only.
std::string with_backslashes(std::string path);

/// True for the name of a pipe of this computer or of another one.
bool is_pipe(const std::string& path);

/// True if opening `path`, whichever separators it has, may reach for another computer: a share
/// ("\\\\host\\share", also behind a long prefix) or any device but a drive. Where evidence names a
/// file, such a name is not opened.
bool names_other_host(std::string_view path);

/// The folders that lead to `path`, from the top down, and `path` itself as the last one.
/// Separators at its end do not count.
std::vector<std::string> folders_down_to(std::string_view path);

/// What stands behind a file's path to name one of its streams, as ":name". `found` is the name
/// that the system lists, ":name:$DATA". Empty for the file's own data.
std::string stream_suffix(std::string_view found);

/// `path` without the prefix that lets it have any length. Names of devices and of shares keep it.
std::string strip_long_prefix(const std::string& path);

/// The system's answer to what `path` is called from the root on.
using full_path_call = std::string (*)(const std::string& path);

/// The form of `path` that may have any length: from the root on, with the prefix that turns the
/// usual limits off. `full_path` is asked unless the path begins with a drive and its root folder.
/// The full stops and blanks that the last name ends in stay.
std::string long_form(const std::string& path, full_path_call full_path);

}  // namespace ovrik::windows_path
