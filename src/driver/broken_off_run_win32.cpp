#include "driver/broken_off_run_win32.h"

#include <csignal>

#include "base/windows_api_win32.h"

namespace ovrik {

namespace {

/// What the console was before the run; zeros without one.
struct console_facts {
  DWORD mode = 0;
  UINT output_code_page = 0;
  UINT input_code_page = 0;
};

console_facts before_run;

void put_back() {
  if (before_run.mode != 0) SetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), before_run.mode);
  if (before_run.output_code_page != 0) SetConsoleOutputCP(before_run.output_code_page);
  if (before_run.input_code_page != 0) SetConsoleCP(before_run.input_code_page);
}

/// Leaves what is to be done to the handlers behind it.
BOOL WINAPI on_control_event(DWORD /*event*/) {
  put_back();
  return FALSE;
}

void on_abort(int /*signal*/) { put_back(); }

}  // namespace

void restore_console_of_broken_off_run() {
  before_run.output_code_page = GetConsoleOutputCP();
  if (before_run.output_code_page == 0) return;
  before_run.input_code_page = GetConsoleCP();
  GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &before_run.mode);
  SetConsoleCtrlHandler(on_control_event, TRUE);
  std::signal(SIGABRT, on_abort);
}

}  // namespace ovrik
