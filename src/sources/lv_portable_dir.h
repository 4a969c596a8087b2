// What the host's file system says about files, without opening them.
#pragma once

#include <string>

namespace lvportdir {

/// True if the two paths (UTF-8) lead to one existing file, be it through links or other names.
bool same_file(const std::string& left, const std::string& right);

/// True if `path` leads to a named pipe, which must not be opened only to try it: its reader would
/// see an end.
bool is_pipe(const std::string& path);

/// Removes the plain file at `path`; leaves anything else, a link too, where it is.
void remove_plain_file(const std::string& path);

}  // namespace lvportdir
