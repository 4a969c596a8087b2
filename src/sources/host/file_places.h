// Where a file of the host lies and who else uses it, whatever name leads to it.
#pragma once

#include <string>
#include <vector>

namespace lvportdir {

/// True if the existing file at `path` (UTF-8) lies in `folder` or a folder below it, once all
/// links are followed.
bool lies_below(const std::string& path, const std::string& folder);

/// True if `path` leads to the plain file that is the standard input, or the standard output, of
/// the process.
bool is_standard_input(const std::string& path);
bool is_standard_output(const std::string& path);

/// True if a plain file stands at `path`, be it through links.
bool is_plain_file(const std::string& path);

/// The paths of the files that the block device at `path` takes its bytes from, through partitions
/// and devices made of others. Empty for what is no such device, and on a host without them.
std::vector<std::string> backing_files(const std::string& path);

}  // namespace lvportdir
