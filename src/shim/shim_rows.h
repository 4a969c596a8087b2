// One parsed cache as output: headings, columns and rows of every form.
#pragma once

#include <ostream>

#include "base/byte_view.h"
#include "shim/shim_cache.h"
#include "shim/shim_settings.h"

namespace ovrik {

/// Writes the rows of a cache, or in raw mode the list of its entries; `data` are the bytes that
/// were parsed. False: there is nothing to write.
bool output_shim_cache(std::ostream& out, const shim_cache_results& results,
                       shim_settings& settings, byte_view data);

}  // namespace ovrik
