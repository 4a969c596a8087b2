// The columns of the cell rows and what fills them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output/field_row.h"
#include "shim/cache_section.h"
#include "shim/shim_cache.h"
#include "shim/shim_layouts.h"
#include "shim/shim_settings.h"

namespace ovrik {

/// The words of `flags1`, joined by "; ".
std::string shim_flags_meaning(uint32_t flags1);

/// The columns of a section whose first entry is of `layout`.
std::vector<field_cell> shim_columns(const shim_layout_row& layout, const cache_section& section,
                                     const shim_settings& settings, const row_settings& rows);

/// The cells of one entry under the columns of the writer's section, which `shim_columns` made for
/// the same `layout`.
field_row shim_row(const shim_cache_entry& entry, const shim_layout_row& layout,
                   const cache_section& section, const shim_settings& settings,
                   const row_writer& writer);

}  // namespace ovrik
