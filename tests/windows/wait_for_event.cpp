// wait_for_event NAME PROGRAM ARGUMENT...: makes the event, runs the program and tells on standard
// error whether it raised the event. Ends with the program's exit value.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <string>

int wmain(int argc, wchar_t** argv) {
  if (argc < 3) return 1;
  _setmode(_fileno(stderr), _O_BINARY);
  HANDLE event = CreateEventW(nullptr, TRUE, FALSE, argv[1]);
  std::wstring line;
  for (int i = 2; i < argc; ++i) line += L"\"" + std::wstring(argv[i]) + L"\" ";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  if (event == nullptr || !CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                          nullptr, &start, &started)) {
    return 2;
  }
  WaitForSingleObject(started.hProcess, INFINITE);
  std::fputs(WaitForSingleObject(event, 0) == WAIT_OBJECT_0 ? "raised\n" : "not raised\n", stderr);
  DWORD exit_value = 0;
  GetExitCodeProcess(started.hProcess, &exit_value);
  return static_cast<int>(exit_value);
}
