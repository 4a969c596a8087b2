#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "base/windows_api_win32.h"
#include "driver/run.h"

// The runtime hands the arguments on as they are, and does not fill in file names for a star.
extern "C" {
extern int _dowildcard;
int _dowildcard = 0;
}

extern "C" int wmain(int argc, wchar_t** argv) {
  // Text goes out as it is, and no error box waits for a hand.
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  ovrik::argument_list args;
  for (int i = 0; i < argc; ++i) {
    args.push_back(argv[i] == nullptr ? std::string() : ovrik::from_wide(argv[i]));
  }
  return ovrik::run(args);
}
