#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "base/windows_api_win32.h"
#include "driver/host/run_console_win32.h"
#include "driver/host/wow64_redirect_adt_win32.h"
#include "driver/run.h"

// The runtime hands the arguments on as they are, and does not fill in file names for a star.
// NOLINTBEGIN(readability-identifier-naming): the runtime's own name
extern "C" {
extern int _dowildcard;
int _dowildcard = 0;
}
// NOLINTEND(readability-identifier-naming)

namespace {

/// Gives a program without standard streams, as a service is, ones that take and give nothing. A
/// write to a missing standard output still fails, as it must.
void occupy_standard_streams() {
  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    HANDLE given = GetStdHandle(stream);
    if (given != nullptr && given != INVALID_HANDLE_VALUE) continue;
    SetStdHandle(stream, CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     nullptr, OPEN_EXISTING, 0, nullptr));
  }
}

}  // namespace

extern "C" int wmain(int argc, wchar_t** argv) {
  // Text goes out as it is, and no error box waits for a hand.
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  occupy_standard_streams();
  ovrik::take_console();
  // Evidence and results are the files that their paths name, in every part of the run: what one
  // part takes for a free name, another one must not find to be evidence.
  const ovrik::wow64_redirect_adt guard;
  ovrik::argument_list args;
  for (int i = 0; i < argc; ++i) {
    args.push_back(argv[i] == nullptr ? std::string() : ovrik::from_wide(argv[i]));
  }
  return ovrik::run(args);
}
