// One parsed cache as output: headings, columns and rows of every form.
#pragma once

#include "base/byte_view.h"
#include "output/row_writer.h"
#include "shim/cache_section.h"
#include "shim/shim_parse.h"
#include "shim/shim_settings.h"

namespace ovrik {

/// Writes the rows of a cache, or in raw mode the list of its entries; `data` are the bytes that
/// were parsed, in raw mode if the settings say so. False: there is nothing to write.
bool output_shim_cache(row_writer& writer, const cache_section& section,
                       const shim_cache_results& results, const shim_settings& settings,
                       byte_view data);

}  // namespace ovrik
