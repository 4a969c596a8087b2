// watch_console REPORT INPUT PROGRAM ARGUMENT...: runs the program in the console of this one and
// writes to the file REPORT that console's output code page and mode from before, within and after
// the run. The program must wait for its standard input, which is the line INPUT.
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <windows.h>

#include <cstdio>

namespace {

void tell(std::FILE* report, const char* when) {
  DWORD mode = 0;
  GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode);
  std::fprintf(report, "%s: code page %u, mode %lu\n", when, GetConsoleOutputCP(), mode);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  std::FILE* report = argc < 4 ? nullptr : _wfopen(argv[1], L"wb");
  int input[2];
  if (report == nullptr || _pipe(input, 16, _O_BINARY | _O_NOINHERIT) != 0) return 1;
  _dup2(input[0], _fileno(stdin));
  SetConsoleOutputCP(437);
  SetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), 3);
  tell(report, "before");

  const intptr_t program = _wspawnv(_P_NOWAIT, argv[3], argv + 3);
  for (int i = 0; i < 1000 && GetConsoleOutputCP() == 437; ++i) Sleep(10);
  tell(report, "within");
  std::FILE* writer = _fdopen(input[1], "wb");
  std::fprintf(writer, "%ls\n", argv[2]);
  std::fclose(writer);
  _cwait(nullptr, program, 0);
  tell(report, "after");
  std::fclose(report);
  return 0;
}
