#include "driver/host/run_console_win32.h"

#include <csignal>
#include <optional>

#include "base/windows_api_win32.h"
#include "driver/host/host_console.h"
#include "output/unbroken.h"
#include "output/utf8_locale_win32.h"

namespace ovrik {

namespace {

std::optional<uni::utf8_locale> console_text;

void put_back() {
  restore_console_mode();
  console_text.reset();
}

/// Writes the rows that are whole and restores the console, then lets the next handler run, which
/// ends the process.
BOOL WINAPI on_control_event(DWORD /*event*/) {
  uni::end_rows();
  put_back();
  return FALSE;
}

void on_abort(int /*signal*/) { put_back(); }

}  // namespace

void take_console() {
  console_text.emplace();
  SetConsoleCtrlHandler(on_control_event, TRUE);
  std::signal(SIGABRT, on_abort);
}

}  // namespace ovrik
