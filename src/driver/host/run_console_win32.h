// The console for the time of a run.
#pragma once

namespace ovrik {

/// Makes the console show UTF-8 until the program ends, and sees to it that it is put back, its
/// mode too, also when Ctrl-C, the closing of the console or a failed check ends the program.
void take_console();

}  // namespace ovrik
