#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "base/windows_api_win32.h"
#include "driver/host/host_console.h"

namespace ovrik {

namespace {

constexpr DWORD escape_sequences = 7;  // processed, wrapped, virtual terminal

}  // namespace

uint32_t enable_escape_sequences() {
  HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(console, &mode) == 0) return 0;
  SetConsoleMode(console, mode | escape_sequences);
  return mode;
}

void restore_console_mode(uint32_t mode) {
  if (mode != 0) SetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), mode);
}

bool standard_error_is_terminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

void set_binary_input() { _setmode(_fileno(stdin), _O_BINARY); }

bool signal_event(const std::string& name) {
  HANDLE event = CreateEventW(nullptr, TRUE, FALSE, to_wide(name).c_str());
  if (event == nullptr) return false;
  const bool raised = SetEvent(event) != 0;
  CloseHandle(event);
  return raised;
}

}  // namespace ovrik
