// wait_for_event NAME PROGRAM ARGUMENT...: makes the event, runs the program and tells on standard
// error whether it raised the event.
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <windows.h>

#include <cstdio>

int wmain(int argc, wchar_t** argv) {
  if (argc < 3) return 1;
  _setmode(_fileno(stderr), _O_BINARY);
  HANDLE event = CreateEventW(nullptr, TRUE, FALSE, argv[1]);
  _wspawnv(_P_WAIT, argv[2], argv + 2);
  std::fputs(WaitForSingleObject(event, 0) == WAIT_OBJECT_0 ? "raised\n" : "not raised\n", stderr);
  return 0;
}
