#include <fcntl.h>
#include <io.h>

#include <atomic>
#include <cstdio>

#include "base/windows_api_win32.h"
#include "driver/host/host_console.h"

namespace ovrik {

namespace {

constexpr DWORD escape_sequences = 7;  // processed, wrapped, virtual terminal

std::atomic<DWORD> mode_found = 0;  ///< of the console behind standard error; 0 without one

}  // namespace

void enable_escape_sequences() {
  HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(console, &mode) == 0) return;
  mode_found = mode;
  SetConsoleMode(console, mode | escape_sequences);
}

void restore_console_mode() {
  const DWORD mode = mode_found;
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
