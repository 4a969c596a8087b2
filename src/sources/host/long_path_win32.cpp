#include "sources/host/long_path_win32.h"

#include <algorithm>

namespace ovrik {

namespace {

std::wstring full_path(const std::wstring& path) {
  std::wstring full(MAX_PATH, L'\0');
  DWORD length =
      GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (length > full.size()) {  // the size that it needs, with the terminator
    full.resize(length);
    length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  }
  if (length == 0 || length > full.size()) return path;
  full.resize(length);
  return full;
}

size_t name_of(const std::wstring& path) { return path.find_last_of(L"\\/") + 1; }

/// The full path, which keeps the full stops and blanks that its last name ends in.
std::wstring full_path_with_end(const std::wstring& path) {
  if (!loses_its_end(path)) return full_path(path);
  const size_t name = name_of(path);
  std::wstring folder = full_path(name == 0 ? L"." : path.substr(0, name));
  if (!folder.ends_with(L'\\')) folder += L'\\';
  return folder + path.substr(name);
}

auto ask_attributes(WIN32_FILE_ATTRIBUTE_DATA& found) {
  return [&found](const wchar_t* name) {
    return GetFileAttributesExW(name, GetFileExInfoStandard, &found) != 0;
  };
}

bool is_refused(bool done) { return !done; }

}  // namespace

bool loses_its_end(const std::wstring& path) {
  const std::wstring name = path.substr(name_of(path));
  return (name.ends_with(L'.') || name.ends_with(L' ')) && name != L"." && name != L"..";
}

bool may_be_too_long() {
  const DWORD error = GetLastError();
  return error == ERROR_FILENAME_EXCED_RANGE || error == ERROR_PATH_NOT_FOUND;
}

std::wstring long_form(const std::wstring& path) {
  constexpr const wchar_t* prefix = L"\\\\?\\";
  const bool from_drive =
      path.size() > 2 && path[1] == L':' && (path[2] == L'\\' || path[2] == L'/');
  std::wstring full = from_drive ? path : full_path_with_end(path);
  std::replace(full.begin(), full.end(), L'/', L'\\');
  if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\")) return full;
  if (full.starts_with(L"\\\\")) return prefix + (L"UNC" + full.substr(1));
  return prefix + full;
}

HANDLE open_handle(const std::string& path, DWORD access, DWORD sharing, DWORD disposition,
                   DWORD flags) {
  const auto open = [=](const wchar_t* name) {
    return CreateFileW(name, access, sharing, nullptr, disposition, flags, nullptr);
  };
  const auto failed = [](HANDLE handle) { return handle == INVALID_HANDLE_VALUE; };
  const bool exact = disposition == OPEN_EXISTING && (access & GENERIC_WRITE) == 0;
  return exact ? with_exact_path(to_wide(path), open, failed)
               : with_long_path(to_wide(path), open, failed);
}

bool file_attributes(const std::string& path, WIN32_FILE_ATTRIBUTE_DATA& found) {
  return with_long_path(to_wide(path), ask_attributes(found), is_refused);
}

bool exact_file_attributes(const std::string& path, WIN32_FILE_ATTRIBUTE_DATA& found) {
  return with_exact_path(to_wide(path), ask_attributes(found), is_refused);
}

}  // namespace ovrik
