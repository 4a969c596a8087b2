#include "sources/host/long_path_win32.h"

#include "sources/host/host_path.h"

namespace ovrik {

namespace {

auto ask_attributes(WIN32_FILE_ATTRIBUTE_DATA& found) {
  return [&found](const wchar_t* name) {
    return GetFileAttributesExW(name, GetFileExInfoStandard, &found) != 0;
  };
}

bool is_refused(bool done) { return !done; }

}  // namespace

bool may_be_too_long() {
  const DWORD error = GetLastError();
  return error == ERROR_FILENAME_EXCED_RANGE || error == ERROR_PATH_NOT_FOUND;
}

std::string long_form(const std::string& path) { return windows_path::long_form(path, full_path); }

HANDLE open_handle(const std::string& path, DWORD access, DWORD sharing, DWORD disposition,
                   DWORD flags) {
  const auto open = [=](const wchar_t* name) {
    return CreateFileW(name, access, sharing, nullptr, disposition, flags, nullptr);
  };
  const auto failed = [](HANDLE handle) { return handle == INVALID_HANDLE_VALUE; };
  const bool exact = disposition == OPEN_EXISTING && (access & GENERIC_WRITE) == 0;
  return exact ? with_exact_path(path, open, failed) : with_long_path(path, open, failed);
}

bool file_attributes(const std::string& path, WIN32_FILE_ATTRIBUTE_DATA& found) {
  return with_long_path(path, ask_attributes(found), is_refused);
}

bool exact_file_attributes(const std::string& path, WIN32_FILE_ATTRIBUTE_DATA& found) {
  return with_exact_path(path, ask_attributes(found), is_refused);
}

}  // namespace ovrik
