#include <fcntl.h>

#include <csignal>

#include "driver/run.h"
#include "output/unbroken.h"

namespace {

/// Makes sure that no file of the run can take the place of a closed standard stream. A write to a
/// closed standard output still fails, as it must.
void occupy_standard_streams() {
  for (const int stream : {0, 1, 2}) {
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == 2 ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace

int main(int argc, char** argv) {
  occupy_standard_streams();
  // A reader that goes away is a failed write, which is said, and not the end of the program.
  std::signal(SIGPIPE, SIG_IGN);
  // So is a file that may not grow any further.
  std::signal(SIGXFSZ, SIG_IGN);
  uni::end_with_whole_rows();
  return ovrik::run(ovrik::argument_list(argv, argv + argc));
}
