#include "sources/host/console_pieces.h"
#include "sources/host/handle_win32.h"
#include "sources/host/host_file.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"

namespace uni {

namespace {

constexpr DWORD share_results = FILE_SHARE_READ | FILE_SHARE_WRITE;

HANDLE handle_of(host_file file) {
  return reinterpret_cast<HANDLE>(file);  // NOLINT(performance-no-int-to-ptr): that is what it is
}

bool is_console(HANDLE file) {
  DWORD mode = 0;
  return GetConsoleMode(file, &mode) != 0;
}

/// Makes a file writable, so that it can be replaced.
void clear_read_only(const std::string& name) {
  WIN32_FILE_ATTRIBUTE_DATA found{};
  if (!ovrik::file_attributes(name, found)) return;
  constexpr DWORD in_the_way =
      FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
      (found.dwFileAttributes & in_the_way) == 0) {
    return;
  }
  ovrik::with_long_path(
      name,
      [](const wchar_t* path) { return SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL) != 0; },
      [](bool done) { return !done; });
}

/// True for the device of a disk or a volume: no character device, and without the information that
/// the system has of every file.
bool is_disk(const std::string& name) {
  const ovrik::file_handle device(
      ovrik::open_handle(name, 0, share_results | FILE_SHARE_DELETE, OPEN_EXISTING, 0));
  BY_HANDLE_FILE_INFORMATION facts{};
  if (!device.is_open()) return false;
  const DWORD type = GetFileType(device.get());
  return type != FILE_TYPE_CHAR && type != FILE_TYPE_PIPE &&
         GetFileInformationByHandle(device.get(), &facts) == 0;
}

/// The handle of a standard stream; that of no file where the program has none.
host_file standard_stream(DWORD which) {
  HANDLE stream = GetStdHandle(which);
  return stream == nullptr ? no_host_file : reinterpret_cast<host_file>(stream);
}

struct use_flags {
  DWORD access;
  DWORD sharing;
  DWORD disposition;
};

// A pipe may have been made for writing only.
constexpr use_flags flags_of_pipe = {GENERIC_WRITE, 0, OPEN_EXISTING};

// What is asked of the system, in the order of `file_use`. Evidence may be in use, so other
// programs keep every right on it.
constexpr use_flags flags_of_use[] = {
    {GENERIC_READ, share_results | FILE_SHARE_DELETE, OPEN_EXISTING},
    {GENERIC_READ | GENERIC_WRITE, share_results, CREATE_ALWAYS},
    {GENERIC_WRITE, share_results, CREATE_NEW},
    {GENERIC_WRITE, share_results, OPEN_EXISTING},
};

}  // namespace

host_file open_host_file(const std::string& path, file_use use) {
  const std::string name = ovrik::without_trailing_separators(path);
  if (name.empty()) return no_host_file;
  const bool to_pipe = use != file_use::read && lvportdir::is_pipe(name);
  if (use != file_use::read && !to_pipe && is_disk(name)) return no_host_file;
  if (!to_pipe && (use == file_use::replace || use == file_use::append)) clear_read_only(name);
  const use_flags& flags = to_pipe ? flags_of_pipe : flags_of_use[static_cast<size_t>(use)];
  HANDLE file = ovrik::open_handle(name, flags.access, flags.sharing, flags.disposition,
                                   FILE_ATTRIBUTE_NORMAL);
  // Evidence is a plain file or a whole disk.
  if (use == file_use::read && file != INVALID_HANDLE_VALUE &&
      GetFileType(file) != FILE_TYPE_DISK) {
    CloseHandle(file);
    return no_host_file;
  }
  return reinterpret_cast<host_file>(file);
}

bool close_host_file(host_file file) { return CloseHandle(handle_of(file)) != 0; }

host_file host_standard_output() { return standard_stream(STD_OUTPUT_HANDLE); }
host_file host_standard_error() { return standard_stream(STD_ERROR_HANDLE); }

uint64_t host_file_length(host_file file) { return ovrik::handle_length(handle_of(file)); }

bool read_host_file(host_file file, void* buffer, size_t size, uint64_t offset, size_t& got) {
  DWORD count = 0;
  const bool read =
      ovrik::read_handle(handle_of(file), buffer, static_cast<DWORD>(size), offset, count);
  got = count;
  return read || GetLastError() == ERROR_HANDLE_EOF;
}

void seek_host_file_end(host_file file) {
  SetFilePointerEx(handle_of(file), {}, nullptr, FILE_END);
}

bool write_host_file(host_file file, const uint8_t* bytes, size_t size, size_t& put) {
  HANDLE handle = handle_of(file);
  const bool console = is_console(handle);
  const size_t piece = console ? console_piece({bytes, size}) : size;
  DWORD count = 0;
  const bool written = WriteFile(handle, bytes, static_cast<DWORD>(piece), &count, nullptr) != 0;
  // Up to Windows 7 a console answers with characters, not bytes, so its count is not used.
  put = console && written ? piece : count;
  return written && put != 0;
}

bool extend_host_file(host_file file, uint64_t size) {
  HANDLE handle = handle_of(file);
  // Makes the file sparse. A file system without sparse files fills it with zeros.
  DWORD unused = 0;
  DeviceIoControl(handle, FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &unused, nullptr);
  LARGE_INTEGER end{};
  end.QuadPart = static_cast<LONGLONG>(size);
  return SetFilePointerEx(handle, end, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(handle) != 0;
}

}  // namespace uni
