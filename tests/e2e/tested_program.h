// The program that the end-to-end tests run: that of this build or, under Wine, that for Windows.

#pragma once

#include "support/run_program.h"

namespace test_support {

/// What starts the program: it alone, or behind what runs programs of Windows. The environment may
/// name the two (OVRIK_PROGRAM, OVRIK_WINE).
std::vector<std::string> ovrik_command();

/// True if the program is the one for Windows.
bool is_windows_program();

/// A path with "/" as the program writes it on its host.
std::string host_path(std::string path);

/// True if a live check ended the program.
bool ended_abnormally(const run_result& result);

/// Runs the program.
run_result run_ovrik(const std::vector<std::string>& arguments, const run_options& options = {});

/// Runs a program that was built beside that for Windows.
run_result run_beside_ovrik(const std::string& name, const std::vector<std::string>& arguments,
                            const run_options& options = {});

}  // namespace test_support
