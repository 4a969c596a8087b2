// The program that the end-to-end tests run: that of this build or, under Wine, that for Windows.

#pragma once

#include "support/run_program.h"

namespace test_support {

/// True if the program is the one for Windows.
bool is_windows_program();

/// Path of the program, which the environment may name (OVRIK_PROGRAM), or of one built beside it.
std::string program_path(const std::string& beside = "");

/// The shell's words that start it: its path, behind what runs programs of Windows (OVRIK_WINE).
std::string start_of_program(const std::string& beside = "");

/// A path with "/" as the program writes it on its host.
std::string host_path(std::string path);

/// What a shell tells of a program that a live check ended.
int abnormal_end();

/// Runs the program.
run_result run_ovrik(const shell_words& arguments, const run_options& options = {},
                     const std::string& beside = "");

}  // namespace test_support
