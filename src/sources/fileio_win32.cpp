#include <algorithm>
#include <map>

#include "sources/fileio.h"
#include "sources/host_path.h"
#include "sources/long_path_win32.h"

namespace uni {

namespace {

constexpr size_t largest_piece = 0x10000000;  // the most that one system call is asked for
constexpr size_t console_piece = 0x2000;      // an old console takes no more than some 32 KiB

HANDLE handle_of(intptr_t file) {
  return reinterpret_cast<HANDLE>(file);  // NOLINT(performance-no-int-to-ptr): that is what it is
}

/// True if a standard stream goes to a console. That does not change, and asking costs a turn of
/// the process behind the console, so each stream is asked once.
bool is_console(HANDLE stream) {
  static std::map<HANDLE, bool> answers;
  const auto known = answers.find(stream);
  if (known != answers.end()) return known->second;
  DWORD mode = 0;
  return answers[stream] = GetConsoleMode(stream, &mode) != 0;
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
      ovrik::to_wide(name),
      [](const wchar_t* path) { return SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL) != 0; },
      [](bool done) { return !done; });
}

/// How much of `size` bytes of text a console gets at once: a piece that ends between characters.
size_t console_piece_of(const uint8_t* text, size_t size) {
  if (size <= console_piece) return size;
  size_t end = console_piece;
  while (end > console_piece - 4 && (text[end] & 0xC0U) == 0x80U) --end;
  return end;
}

/// Writes a console's text. The count that comes back is not looked at: an old console counts
/// characters where it was asked for bytes.
bool write_console(HANDLE console, const uint8_t* text, size_t size) {
  while (size > 0) {
    const size_t piece = console_piece_of(text, size);
    DWORD put = 0;
    if (WriteFile(console, text, static_cast<DWORD>(piece), &put, nullptr) == 0) return false;
    text += piece;
    size -= piece;
  }
  return true;
}

bool write_file(HANDLE file, const uint8_t* bytes, size_t size) {
  while (size > 0) {
    DWORD put = 0;
    const auto piece = static_cast<DWORD>(std::min(size, largest_piece));
    if (WriteFile(file, bytes, piece, &put, nullptr) == 0 || put == 0) return false;
    bytes += put;
    size -= put;
  }
  return true;
}

/// The handle of a standard stream; that of no file where the program has none.
intptr_t standard_stream(DWORD which) {
  HANDLE stream = GetStdHandle(which);
  return reinterpret_cast<intptr_t>(stream == nullptr ? INVALID_HANDLE_VALUE : stream);
}

}  // namespace

fileio::~fileio() { close(); }

bool fileio::open_read(const std::string& path) {
  close();
  const std::string name = ovrik::without_trailing_separators(path);
  if (name.empty()) return false;
  // Nobody is kept from what he does with the file: evidence may be in use.
  m_file = reinterpret_cast<intptr_t>(
      ovrik::open_handle(name, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL));
  m_owned = true;
  // Evidence is a plain file or a whole disk.
  if (is_open() && GetFileType(handle_of(m_file)) != FILE_TYPE_DISK) close();
  return is_open();
}

bool fileio::open_write(const std::string& path) {
  close();
  const std::string name = ovrik::without_trailing_separators(path);
  if (name.empty()) return false;
  clear_read_only(name);
  m_file = reinterpret_cast<intptr_t>(ovrik::open_handle(name, GENERIC_READ | GENERIC_WRITE,
                                                         FILE_SHARE_READ | FILE_SHARE_WRITE,
                                                         CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL));
  m_owned = true;
  return is_open();
}

bool fileio::open_new(const std::string& path) {
  close();
  const std::string name = ovrik::without_trailing_separators(path);
  if (name.empty()) return false;
  m_file = reinterpret_cast<intptr_t>(ovrik::open_handle(
      name, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, CREATE_NEW, FILE_ATTRIBUTE_NORMAL));
  m_owned = true;
  return is_open();
}

bool fileio::open_append(const std::string& path) {
  close();
  const std::string name = ovrik::without_trailing_separators(path);
  if (name.empty()) return false;
  clear_read_only(name);
  m_file = reinterpret_cast<intptr_t>(ovrik::open_handle(name, GENERIC_WRITE,
                                                         FILE_SHARE_READ | FILE_SHARE_WRITE,
                                                         OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL));
  m_owned = true;
  return is_open();
}

void fileio::attach_standard_output() {
  close();
  m_file = standard_stream(STD_OUTPUT_HANDLE);
  m_owned = false;
}

void fileio::attach_standard_error() {
  close();
  m_file = standard_stream(STD_ERROR_HANDLE);
  m_owned = false;
}

uint64_t fileio::length() const {
  LARGE_INTEGER size{};
  if (!is_open() || GetFileSizeEx(handle_of(m_file), &size) == 0 || size.QuadPart < 0) return 0;
  return static_cast<uint64_t>(size.QuadPart);
}

bool fileio::read_at(void* buffer, size_t& size, uint64_t offset) const {
  const size_t wanted = size;
  size = 0;
  const uint64_t end = length();
  if (offset >= end) return false;
  const size_t total = static_cast<size_t>(std::min<uint64_t>(wanted, end - offset));
  while (size < total) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset + size);
    place.OffsetHigh = static_cast<DWORD>((offset + size) >> 32);
    DWORD got = 0;
    const auto piece = static_cast<DWORD>(std::min(total - size, largest_piece));
    if (ReadFile(handle_of(m_file), static_cast<uint8_t*>(buffer) + size, piece, &got, &place) ==
        0) {
      return GetLastError() == ERROR_HANDLE_EOF;
    }
    if (got == 0) break;
    size += got;
  }
  return true;
}

bool fileio::append(const void* bytes, size_t size) {
  if (!is_open()) return false;
  HANDLE file = handle_of(m_file);
  const auto* first = static_cast<const uint8_t*>(bytes);
  if (!m_owned)
    return is_console(file) ? write_console(file, first, size) : write_file(file, first, size);
  // A pipe or a console has no end to go to; everything written goes there anyway.
  SetFilePointerEx(file, {}, nullptr, FILE_END);
  return write_file(file, first, size);
}

bool fileio::extend(uint64_t size) {
  if (!is_open()) return false;
  HANDLE file = handle_of(m_file);
  // What is not written takes no room then; a file system that cannot do that fills it.
  DWORD unused = 0;
  DeviceIoControl(file, FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &unused, nullptr);
  LARGE_INTEGER end{};
  end.QuadPart = static_cast<LONGLONG>(size);
  return SetFilePointerEx(file, end, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(file) != 0;
}

bool fileio::close() {
  const bool is_closed = !is_open() || !m_owned || CloseHandle(handle_of(m_file)) != 0;
  m_file = no_file;
  return is_closed;
}

}  // namespace uni
