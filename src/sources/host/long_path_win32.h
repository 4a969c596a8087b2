// Paths that are longer than Windows takes in their plain form.
#pragma once

#include <cstdint>
#include <string>

#include "base/windows_api_win32.h"
#include "sources/host/windows_path.h"

namespace ovrik {

/// True if the last call failed because its path was too long, or was not found, which a path that
/// is too long can look like.
bool may_be_too_long();

/// The form of a plain path (UTF-8) that may be of any length.
std::string long_form(const std::string& path);

/// `call(path)`, with the path (UTF-8) in wide characters; if that fails as a path that is too long
/// does, `call` of its long form. `failed(result)` tells a failure.
template <typename system_call, typename failure_test>
auto with_long_path(const std::string& path, system_call call, failure_test failed) {
  auto result = call(to_wide(path).c_str());
  if (failed(result) && may_be_too_long()) result = call(to_wide(long_form(path)).c_str());
  return result;
}

/// As `with_long_path`, for something that exists: it is the one whose name is not cut, if there
/// is one.
template <typename system_call, typename failure_test>
auto with_exact_path(const std::string& path, system_call call, failure_test failed) {
  if (windows_path::loses_its_end(path)) {
    auto result = call(to_wide(long_form(path)).c_str());
    if (!failed(result)) return result;
  }
  return with_long_path(path, call, failed);
}

/// `CreateFileW` with the long form as a fallback, sharing as asked for. What exists is opened
/// under its exact name, unless it is to be written to.
HANDLE open_handle(const std::string& path, DWORD access, DWORD sharing, DWORD disposition,
                   DWORD flags);

/// `GetFileAttributesExW` with the long form as a fallback, of what would be written to under the
/// path. False: nothing is there.
bool file_attributes(const std::string& path, WIN32_FILE_ATTRIBUTE_DATA& found);

/// The same of what would be read.
bool exact_file_attributes(const std::string& path, WIN32_FILE_ATTRIBUTE_DATA& found);

}  // namespace ovrik
