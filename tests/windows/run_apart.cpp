// run_apart NAME PROGRAM ARGUMENT...: runs the program, whose arguments hold no blanks, and ends
// with its exit value. It has no standard streams if NAME is "detached"; else NAME is a pipe that
// can be read from and takes one writer once, and what comes through it goes to standard output.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

HANDLE start(const std::wstring& line, bool detached) {
  std::wstring command = line;
  STARTUPINFOW facts{};
  facts.cb = sizeof facts;
  facts.dwFlags = detached ? STARTF_USESTDHANDLES : 0;
  PROCESS_INFORMATION started{};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE,
                     detached ? DETACHED_PROCESS : 0, nullptr, nullptr, &facts, &started) == 0) {
    return nullptr;
  }
  CloseHandle(started.hThread);
  return started.hProcess;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 3) return 1;
  _setmode(_fileno(stdout), _O_BINARY);
  const std::wstring name = argv[1];
  const bool detached = name == L"detached";
  HANDLE pipe = detached ? INVALID_HANDLE_VALUE
                         : CreateNamedPipeW(name.c_str(), PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE, 1, 0,
                                            0x10000, 0, nullptr);
  std::wstring line;
  for (int i = 2; i < argc; ++i) line += std::wstring(argv[i]) + L' ';
  HANDLE program = start(line, detached);
  if (program == nullptr) return 1;
  if (!detached) {
    ConnectNamedPipe(pipe, nullptr);
    char bytes[4096];
    for (DWORD got = 0; ReadFile(pipe, bytes, sizeof bytes, &got, nullptr) != 0;) {
      std::fwrite(bytes, 1, got, stdout);
    }
  }
  WaitForSingleObject(program, INFINITE);
  DWORD exit_value = 0;
  GetExitCodeProcess(program, &exit_value);
  return static_cast<int>(exit_value);
}
