#include "sources/host/handle_win32.h"

namespace ovrik {

uint64_t handle_length(HANDLE file) {
  LARGE_INTEGER size{};
  if (GetFileSizeEx(file, &size) == 0 || size.QuadPart < 0) return 0;
  return static_cast<uint64_t>(size.QuadPart);
}

bool read_handle(HANDLE file, void* buffer, DWORD size, uint64_t offset, DWORD& got) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  got = 0;
  return ReadFile(file, buffer, size, &got, &place) != 0;
}

std::wstring real_path_of(HANDLE file) {
  constexpr DWORD form = VOLUME_NAME_NT;  // of volumes without a letter too
  const DWORD size = GetFinalPathNameByHandleW(file, nullptr, 0, form);
  std::wstring real(size, L'\0');
  const DWORD length = GetFinalPathNameByHandleW(file, real.data(), size, form);
  if (length == 0 || length >= size) return {};
  real.resize(length);
  return real;
}

}  // namespace ovrik
