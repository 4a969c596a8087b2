// The parts of the console and the signals to other programs that only some hosts have.
#pragma once

#include <string>

namespace ovrik {

/// Makes the console behind standard error understand escape sequences. Does nothing without one.
void enable_escape_sequences();

/// Puts the console back as `enable_escape_sequences` found it. Does nothing if that was not called
/// or found no console. May be called more than once, and from any thread.
void restore_console_mode();

/// True if standard error goes to a terminal.
bool standard_error_is_terminal();

/// Makes the standard input give its bytes as they are.
void set_binary_input();

/// Raises the named event that another program waits for. False: the host has no such events, or
/// the event could not be raised.
bool signal_event(const std::string& name);

}  // namespace ovrik
