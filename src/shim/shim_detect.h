// Recognises the layout of a cache from its first bytes and its first entry.
#pragma once

#include "base/byte_view.h"
#include "shim/shim_cache.h"

namespace ovrik {

/// What the recogniser found out. The lengths of the header and of an entry stand in the layout's
/// row.
struct detected_shim {
  shim_layout layout = shim_layout::none;
  uint32_t entry_count = 0;  ///< as the header states it; 0 for layouts 9 to 14
};

/// True if `data` looks like a cache; `found` then tells which. False: it does not, and `found`
/// is as it was. The buffer may be cut short behind the first entry.
bool detect_shim_layout(byte_view data, detected_shim& found);

}  // namespace ovrik
