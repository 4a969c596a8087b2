#include "shim/shim_parse.h"

namespace ovrik {

bool parse_shim_cache(shim_cache_results& results, byte_view data, uint32_t slack_length,
                      bool raw_mode) {
  results.m_steps.clear();
  detected_shim found;
  if (!detect_shim_layout(data, found)) return false;
  results.m_walk = shim_walk(data, found, slack_length, raw_mode);
  if (results.layout().header_bytes >= data.size()) return false;
  shim_walk& walk = results.m_walk;
  for (shim_cache_entry entry; walk.next(entry);) {
    results.m_steps.push_back({entry.entry_offset, entry.entry_number});
  }
  return true;
}

}  // namespace ovrik
