// Paths of the host that the program runs on. Paths inside evidence are not treated here: they
// keep their backslashes on every host.
#pragma once

#include <string>
#include <string_view>

namespace ovrik {

/// What separates the parts of a path on this host.
char host_separator();

/// `path` without the separators at its end.
std::string without_trailing_separators(std::string_view path);

/// `path` without the name of a stream behind a colon, which Windows takes for a part of the file
/// in front of it; all of it on a host whose files have none.
std::string without_stream_name(std::string_view path);

/// `path` without the full stops and blanks at its end that Windows cuts off when it makes a file;
/// all of it on a host that takes every name.
std::string as_written(std::string_view path);

/// What follows the last separator of `path`, all of it if there is none.
std::string last_component(std::string_view path);

/// True if opening `path` would ask another computer for it. No path of a POSIX host says so.
bool names_other_host(std::string_view path);

/// `path` with the separators that this host writes: on Windows "/" becomes a backslash.
std::string with_host_separators(std::string path);

/// `path` from the root on; `path` itself if the host does not tell.
std::string full_path(const std::string& path);

/// `text` without white space at its ends and double quotes, as a path from the root on. Empty if
/// nothing is left.
std::string make_absolute_path(std::string_view text);

}  // namespace ovrik
