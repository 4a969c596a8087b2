#include "sources/host/handle_win32.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"
#include "sources/host/windows_path.h"

namespace lvportdir {

namespace {

namespace windows_path = ovrik::windows_path;

using ovrik::file_handle;
using ovrik::from_wide;

constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool is_unusable(HANDLE handle) { return handle == INVALID_HANDLE_VALUE; }

bool is_folder(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }

uint64_t ticks_of(const FILETIME& time) {
  return uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

/// A handle that tells about a file or folder, links followed, and gives none of its bytes.
HANDLE open_for_facts(const std::string& path) {
  return ovrik::open_handle(path, 0, share_all, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
}

bool identify(const file_handle& file, link_target& target) {
  BY_HANDLE_FILE_INFORMATION facts{};
  if (!file.is_open() || GetFileInformationByHandle(file.get(), &facts) == 0) return false;
  target.device = facts.dwVolumeSerialNumber;
  target.file_id = uint64_t{facts.nFileIndexHigh} << 32 | facts.nFileIndexLow;
  return true;
}

/// The file itself, whatever stream of it the path names.
HANDLE open_file_for_facts(const std::string& path) {
  return open_for_facts(ovrik::without_stream_name(ovrik::without_trailing_separators(path)));
}

/// The path from its volume on, without links in it and with a separator at its end; empty if it
/// does not exist.
std::wstring real_folder(const std::string& path) {
  const file_handle folder(open_for_facts(path));
  if (!folder.is_open()) return {};
  std::wstring real = ovrik::real_path_of(folder.get());
  if (real.empty()) return {};
  if (!real.ends_with(L'\\')) real += L'\\';
  return real;
}

/// Appends the streams of a file other than its data, each as "path:name".
void append_streams(std::vector<directory_entry>& entries, const std::string& path) {
  WIN32_FIND_STREAM_DATA stream{};
  HANDLE search = ovrik::with_long_path(
      path,
      [&stream](const wchar_t* name) {
        return FindFirstStreamW(name, FindStreamInfoStandard, &stream, 0);
      },
      is_unusable);
  if (is_unusable(search)) return;
  do {
    const std::string suffix = windows_path::stream_suffix(from_wide(stream.cStreamName));
    if (!suffix.empty()) entries.push_back({path + suffix, false});
  } while (FindNextStreamW(search, &stream) != 0);
  FindClose(search);
}

}  // namespace

void list_directory(std::vector<directory_entry>& entries, const std::string& folder) {
  entries.clear();
  const bool ends_in_separator = folder.ends_with('\\') || folder.ends_with('/');
  const std::string prefix = ends_in_separator ? folder : folder + '\\';
  WIN32_FIND_DATAW found{};
  HANDLE search = ovrik::with_long_path(
      prefix + "*.*", [&found](const wchar_t* pattern) { return FindFirstFileW(pattern, &found); },
      is_unusable);
  if (is_unusable(search)) return;
  do {
    const std::string name = from_wide(found.cFileName);
    if (name == "." || name == "..") continue;
    const bool folder_found = is_folder(found.dwFileAttributes);
    entries.push_back({prefix + name, folder_found});
    if (!folder_found) append_streams(entries, prefix + name);
  } while (FindNextFileW(search, &found) != 0);
  FindClose(search);
}

bool file_status(const std::string& path, file_times& times) {
  WIN32_FILE_ATTRIBUTE_DATA found{};
  if (!ovrik::exact_file_attributes(ovrik::without_trailing_separators(path), found)) return false;
  times.written = ticks_of(found.ftLastWriteTime);
  times.created = ticks_of(found.ftCreationTime);
  return true;
}

bool is_folder_link(const std::string& folder, link_target& target, bool& closes_cycle) {
  WIN32_FILE_ATTRIBUTE_DATA found{};
  if (!ovrik::exact_file_attributes(folder, found) || !is_folder(found.dwFileAttributes) ||
      (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 ||
      !identify(file_handle(open_for_facts(folder)), target)) {
    return false;
  }
  const std::wstring real = real_folder(folder);
  const std::wstring parent = real_folder(windows_path::folder_of(folder));
  closes_cycle = !real.empty() && parent.starts_with(real);
  return true;
}

bool same_file(const std::string& left, const std::string& right) {
  // A file keeps its number for as long as it is open.
  const file_handle left_file(open_file_for_facts(left));
  const file_handle right_file(open_file_for_facts(right));
  link_target left_facts;
  link_target right_facts;
  return identify(left_file, left_facts) && identify(right_file, right_facts) &&
         left_facts == right_facts;
}

bool is_pipe(const std::string& path) { return windows_path::is_pipe(path); }

bool make_folders(const std::string& path) {
  const std::vector<std::string> folders = windows_path::folders_down_to(path);
  for (const std::string& folder : folders) {
    ovrik::with_long_path(
        folder, [](const wchar_t* name) { return CreateDirectoryW(name, nullptr) != 0; },
        [](bool done) { return !done; });
  }
  WIN32_FILE_ATTRIBUTE_DATA found{};
  return ovrik::file_attributes(folders.back(), found) && is_folder(found.dwFileAttributes);
}

void remove_plain_file(const std::string& path) {
  const std::string name = ovrik::without_trailing_separators(path);
  WIN32_FILE_ATTRIBUTE_DATA found{};
  if (!ovrik::file_attributes(name, found) ||
      (found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) != 0) {
    return;
  }
  ovrik::with_long_path(
      name,
      [](const wchar_t* file) {
        SetFileAttributesW(file, FILE_ATTRIBUTE_NORMAL);  // a read-only file cannot be removed
        return DeleteFileW(file) != 0;
      },
      [](bool done) { return !done; });
}

std::string strip_long_prefix(const std::string& path) {
  return windows_path::strip_long_prefix(path);
}

}  // namespace lvportdir
