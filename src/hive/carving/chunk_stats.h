// The list of what was carved.
#pragma once

#include <ostream>

#include "hive/carving/chunk_reassembly.h"

namespace ovrik {

/// Writes the pages of every chunk, and then every page that was recognised with what stands on
/// it.
void write_chunk_stats(std::ostream& out, const scanned_source& source, const carved_cache& carved);

}  // namespace ovrik
