// The road of a virtual disk: one hive, read out of a chain of VMDK files.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include "driver/options/cmd_params.h"
#include "driver/options/option_scan.h"

namespace ovrik {

/// Takes the list of files that `option_name` gave ("a | b", also with commas or semicolons), and
/// what further options of that name and a further -offset give; checks that the files make up a
/// disk, and finds the volume on it: the one at the offset or else the last of its NTFS partitions.
/// False: they do not, or there is none, which has been said on standard error.
bool parse_source_options(cmdline_options& options, const std::string& list,
                          const char* option_name, argument_list& args);

/// Prints the cache of the hive on the virtual disk. Returns the exit value: -1 only if no volume
/// can be mounted.
int32_t run_vmdk_road(cmdline_options& options, std::ostream& out);

}  // namespace ovrik
