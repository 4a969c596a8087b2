// What a user is told about the choice of a volume.
#pragma once

#include <string>

#include "sources/disk/volume_choice.h"

namespace ovrik {

/// The lines that say why the volume of `choice` is not the one asked for, what partitions there
/// are, and which offset to name instead. Each ends in a line feed. Empty if it is the one.
std::string volume_words(const volume_choice& choice);

/// Which volume of a disk is read, for the diagnostics: its place and what names it.
std::string volume_road_text(const volume_choice& choice);

}  // namespace ovrik
