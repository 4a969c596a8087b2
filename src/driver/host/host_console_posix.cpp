// A terminal needs no mode for escape sequences, and there are no named events.
#include <unistd.h>

#include "driver/host/host_console.h"

namespace ovrik {

void enable_escape_sequences() {}

void restore_console_mode() {}

bool standard_error_is_terminal() { return isatty(STDERR_FILENO) != 0; }

void set_binary_input() {}

bool signal_event(const std::string& /*name*/) { return false; }

}  // namespace ovrik
