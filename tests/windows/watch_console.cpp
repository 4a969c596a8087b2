// watch_console REPORT PROGRAM ARGUMENT...: runs the program in the console of this one and writes
// to the file REPORT that console's output code page and mode from before, within and after the
// run. The program must wait for its standard input, and say something on its standard output
// first.
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

HANDLE console;
std::FILE* report;

void tell(const char* when) {
  DWORD mode = 0;
  GetConsoleMode(console, &mode);
  std::fprintf(report, "%s: code page %u, mode %lu\n", when, GetConsoleOutputCP(), mode);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  HANDLE read_input = nullptr;
  HANDLE write_input = nullptr;
  HANDLE read_output = nullptr;
  HANDLE write_output = nullptr;
  report = argc < 3 ? nullptr : _wfopen(argv[1], L"wb");
  if (report == nullptr || !CreatePipe(&read_input, &write_input, &inherited, 0) ||
      !CreatePipe(&read_output, &write_output, &inherited, 0)) {
    return 1;
  }
  SetHandleInformation(write_input, HANDLE_FLAG_INHERIT, 0);
  console = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                        FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);
  SetConsoleOutputCP(437);
  SetConsoleMode(console, 3);
  tell("before");

  std::wstring line;
  for (int i = 2; i < argc; ++i) line += L"\"" + std::wstring(argv[i]) + L"\" ";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = read_input;
  start.hStdOutput = write_output;
  start.hStdError = console;
  PROCESS_INFORMATION started{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                      &started)) {
    return 2;
  }
  char first = 0;
  DWORD count = 0;
  ReadFile(read_output, &first, 1, &count, nullptr);
  tell("within");
  CloseHandle(write_input);
  CloseHandle(read_input);
  WaitForSingleObject(started.hProcess, INFINITE);
  tell("after");
  std::fclose(report);
  return 0;
}
