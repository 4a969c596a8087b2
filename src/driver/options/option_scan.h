// Finding options in the argument list. Names compare without regard to case; an option may stand
// anywhere; what is left over in the end is ignored.
#pragma once

#include <string>
#include <vector>

namespace ovrik {

/// The program's arguments in UTF-8, the program path first. Parsing takes out what it consumes.
using argument_list = std::vector<std::string>;

/// Removes the first entry that equals `name`. False: there is none.
bool take_flag(const char* name, argument_list& args);

/// Removes the first entry that equals `name` and the one behind it, which becomes `value` whatever
/// it looks like. False: there is none, or it stands last, where it stays.
bool take_option(const char* name, std::string& value, argument_list& args);

/// True if an entry behind the program path equals `name`.
bool peek_flag(const char* name, const argument_list& args);

/// `take_option` behind the program path, without removing anything.
bool peek_option(const char* name, std::string& value, const argument_list& args);

/// All arguments with blanks between, those that hold a blank wrapped in `quote`.
std::string joined_arguments(const argument_list& args, char quote);

/// A program path without its folders and its extension.
std::string program_name_of(const std::string& program_path);

}  // namespace ovrik
