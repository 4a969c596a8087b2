// The console of a run that does not come to its end.
#pragma once

namespace ovrik {

/// Notes the mode and the code pages of the console, and sees to it that they are put back when
/// Ctrl-C, the closing of the console or a failed check ends the program.
void restore_console_of_broken_off_run();

}  // namespace ovrik
