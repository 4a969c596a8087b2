// Whether the files that a user names make up a whole virtual disk, and which ones are missing.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace ovrik {

/// Checks the files at `paths` (UTF-8). True: they make a chain with a base. False: they do not,
/// and why not went to `text`, line by line. `suggested` becomes the list with every parent that
/// was found behind it: what should be named instead.
bool vmdk_check_chain(const std::vector<std::string>& paths, std::ostream& text,
                      std::vector<std::string>& suggested);

}  // namespace ovrik
