// What a user is told about containers and volumes that are not read as they are.
#pragma once

#include <string>

#include "sources/disk/container_kind.h"

namespace ovrik {

/// One line, with its line feed, that tells the next step. Empty: `none`.
std::string container_advice(container_kind kind);

}  // namespace ovrik
