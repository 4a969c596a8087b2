// What the host's file system says about files, without opening them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lvportdir {

/// One entry of a folder.
struct directory_entry {
  std::string path;  ///< the folder as it was given, a separator and the name
  bool is_directory = false;
};

/// Empties `entries` and fills it with what is in `folder`, folders and files, in the host's order
/// (byte order of the names on a POSIX host). A folder that cannot be listed has no entries.
void list_directory(std::vector<directory_entry>& entries, const std::string& folder);

/// The times of a file that a date window looks at, as FILETIMEs. A host that does not keep the
/// time of creation gives that of the last writing in its place.
struct file_times {
  uint64_t written = 0;
  uint64_t created = 0;
};

/// Tells the times of an existing file. False: there is none, or nothing is known of it.
bool file_status(const std::string& path, file_times& times);

/// Identifies a folder that is reached through a link, however many names it has.
struct link_target {
  uint64_t device = 0;
  uint64_t file_id = 0;
  bool operator==(const link_target&) const = default;
};

/// True if `folder` is a link to a folder; `target` then tells which. A link to a folder that it
/// lies in itself gives `closes_cycle`.
bool is_folder_link(const std::string& folder, link_target& target, bool& closes_cycle);

/// True if the two paths (UTF-8) lead to one existing file, be it through links or other names, or
/// to a stream of it, which need not exist.
bool same_file(const std::string& left, const std::string& right);

/// True if `path` leads to a named pipe, which must not be opened only to look at it: its reader
/// would see an end.
bool is_pipe(const std::string& path);

/// Makes the folder at `path` (UTF-8) and those above it that are missing. False: it is no folder
/// afterwards.
bool make_folders(const std::string& path);

/// Removes the plain file at `path`; leaves anything else, a link too, where it is.
void remove_plain_file(const std::string& path);

/// `path` without the prefix that lets a path of Windows have any length; names of devices keep it,
/// and so does every path on a host that knows no such prefix.
std::string strip_long_prefix(const std::string& path);

}  // namespace lvportdir
