// The parts of the console and the signals to other programs that only some hosts have.
#pragma once

#include <cstdint>
#include <string>

namespace ovrik {

/// Makes the console behind standard error understand escape sequences. Returns the mode to put
/// back at the end, 0 if there is nothing to do.
uint32_t enable_escape_sequences();

/// Puts back what `enable_escape_sequences` returned, unless it is 0.
void restore_console_mode(uint32_t mode);

/// True if standard error goes to a terminal.
bool standard_error_is_terminal();

/// Makes the standard input give its bytes as they are.
void set_binary_input();

/// Raises the named event that another program waits for. False: the host has no such events, or
/// the event could not be raised.
bool signal_event(const std::string& name);

}  // namespace ovrik
