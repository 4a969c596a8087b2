// The elements of -filter and -filter_sig, which pick files out of a list or a tree.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ovrik {

/// One parsed element. Its texts are lower-case.
struct file_filter {
  std::string spec;        ///< without stars and without what follows a ":"
  bool path_spec = false;  ///< `spec` begins with a separator: it names the end of a folder
  bool match_all = false;  ///< "*"
  bool star_left = false;
  bool star_right = false;
  std::vector<uint8_t> signature;  ///< bytes that the file must hold instead of a name
  uint64_t signature_offset = 0;   ///< where in the file, in bytes
};

/// Empties `filters` and fills it with the elements of `text`, which are separated by pipes and by
/// commas; an element "*" stands for them all.
void parse_filter(std::vector<file_filter>& filters, std::string_view text);

/// Appends a signature element: `text` holds hexadecimal bytes and behind a pipe or else a comma
/// their offset. Text without a byte appends nothing.
void append_signature_filter(std::vector<file_filter>& filters, std::string_view text);

/// True if the path of a file passes: there is no element, or one hits. A path element hits where
/// its text ends a folder's name on the way; any other looks at the file's name or, for a
/// signature, into the file. `unreadable` tells that a file did not open for a signature.
bool filter_accepts_path(const std::string& path, const std::vector<file_filter>& filters,
                         bool& unreadable);

}  // namespace ovrik
