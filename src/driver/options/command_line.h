// The help request and the start-up header.
#pragma once

#include <string>

#include "driver/options/option_scan.h"

namespace ovrik {

/// Answers a help request, which is also made by giving no argument at all, or fills `header_text`.
/// True: help was printed and the run is over.
bool prepare_command_line(argument_list& args, std::string& header_text);

}  // namespace ovrik
