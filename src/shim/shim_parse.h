// Walks a cache into its entries.
#pragma once

#include <cstdint>

#include "base/byte_view.h"
#include "shim/shim_cache.h"

namespace ovrik {

/// Empties `results` and fills it with the entries of the cache in `data`, which may be of any
/// layout. `slack_length` says how many bytes at the end are slack behind the value's own data.
/// With `raw_mode` the invalid entries of the layouts 1 to 7 are kept too. True: a layout was
/// recognised and its header lies inside; damage then ends the walk or skips an entry, without a
/// word. False: `data` is no cache.
bool parse_shim_cache(shim_cache_results& results, byte_view data, uint32_t slack_length,
                      bool raw_mode);

}  // namespace ovrik
