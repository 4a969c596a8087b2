// Open files and devices of Windows.
#pragma once

#include <cstdint>
#include <string>

#include "sources/host/long_path_win32.h"

namespace ovrik {

/// The handle of an open file; closes itself.
class file_handle {
 public:
  explicit file_handle(HANDLE handle) : m_handle(handle) {}
  ~file_handle() {
    if (is_open()) CloseHandle(m_handle);
  }
  file_handle(const file_handle&) = delete;
  file_handle& operator=(const file_handle&) = delete;

  bool is_open() const { return m_handle != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return m_handle; }

 private:
  HANDLE m_handle;
};

/// Size of a file in bytes; 0 if it has none.
uint64_t handle_length(HANDLE file);

/// Reads up to `size` bytes at `offset` and sets `got` to the count that came. False: an error,
/// which the system holds.
bool read_handle(HANDLE file, void* buffer, DWORD size, uint64_t offset, DWORD& got);

/// The path of an open file or folder from its volume on, without links in it. Empty if the system
/// does not tell.
std::wstring real_path_of(HANDLE file);

}  // namespace ovrik
