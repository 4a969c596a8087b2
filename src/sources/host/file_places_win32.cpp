#include "sources/host/file_places.h"
#include "sources/host/handle_win32.h"
#include "sources/host/host_path.h"

namespace lvportdir {

namespace {

constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// A handle that tells about a file or folder, links followed, and gives none of its bytes.
HANDLE open_for_facts(const std::string& path) {
  return ovrik::open_handle(ovrik::without_stream_name(ovrik::without_trailing_separators(path)), 0,
                            share_all, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
}

/// The path from its volume on, without links in it; empty if it does not exist.
std::wstring real_path(const std::string& path) {
  const ovrik::file_handle file(open_for_facts(path));
  return file.is_open() ? ovrik::real_path_of(file.get()) : std::wstring();
}

bool is_stream(const std::string& path, DWORD which) {
  HANDLE stream = GetStdHandle(which);
  if (stream == nullptr || stream == INVALID_HANDLE_VALUE ||
      GetFileType(stream) != FILE_TYPE_DISK) {
    return false;
  }
  const ovrik::file_handle file(open_for_facts(path));
  BY_HANDLE_FILE_INFORMATION left{};
  BY_HANDLE_FILE_INFORMATION right{};
  return file.is_open() && GetFileInformationByHandle(file.get(), &left) != 0 &&
         GetFileInformationByHandle(stream, &right) != 0 &&
         left.dwVolumeSerialNumber == right.dwVolumeSerialNumber &&
         left.nFileIndexHigh == right.nFileIndexHigh && left.nFileIndexLow == right.nFileIndexLow;
}

}  // namespace

bool lies_below(const std::string& path, const std::string& folder) {
  std::wstring real = real_path(folder);
  if (real.empty()) return false;
  if (!real.ends_with(L'\\')) real += L'\\';
  return real_path(path).starts_with(real);
}

bool is_standard_input(const std::string& path) { return is_stream(path, STD_INPUT_HANDLE); }
bool is_standard_output(const std::string& path) { return is_stream(path, STD_OUTPUT_HANDLE); }

bool is_plain_file(const std::string& path) {
  const ovrik::file_handle file(open_for_facts(path));
  BY_HANDLE_FILE_INFORMATION facts{};
  return file.is_open() && GetFileInformationByHandle(file.get(), &facts) != 0 &&
         (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::vector<std::string> backing_files(const std::string& /*path*/) { return {}; }

}  // namespace lvportdir
