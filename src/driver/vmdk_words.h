// What a user is told about the files of a virtual disk.
#pragma once

#include <string>

#include "sources/disk/vmdk_chain.h"

namespace ovrik {

/// The lines that say which parents are missing and what is wrong with the files. Each ends in a
/// line feed. Empty: there is nothing to say, which does not make the chain complete.
std::string vmdk_words(const vmdk_chain& chain);

/// One line that tells what to do about files that make up no disk. Empty: nothing is known.
std::string vmdk_advice(const vmdk_chain& chain);

/// The files of the chain as they can be typed behind `option_name`, in one list; a file whose name
/// the list would split gets an option of its own. A POSIX shell takes them literally.
std::string vmdk_option_text(const vmdk_chain& chain, const char* option_name);

}  // namespace ovrik
