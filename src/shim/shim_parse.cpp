#include "shim/shim_parse.h"

#include "base/utf16.h"
#include "shim/shim_walk.h"

namespace ovrik {

namespace {

/// Four times the largest cache that is read. Entries that point to one another's paths could
/// otherwise make a small cache ask for any amount of memory.
constexpr uint64_t most_path_bytes = 0x4000000;

}  // namespace

shim_cache_entry shim_walk::next_entry() {
  shim_cache_entry entry;
  entry.entry_number = m_running_number++;
  entry.entry_offset = static_cast<uint32_t>(offset);
  entry.in_slack = offset + m_slack_length >= data.size();
  return entry;
}

bool shim_walk::read_path(shim_cache_entry& entry, byte_view text) {
  m_path_bytes += text.size();
  if (m_path_bytes > most_path_bytes) return false;
  entry.path_raw = utf16_text(text);
  entry.path_had_prefix = entry.path_raw.find(native_prefix) != std::string::npos;
  return true;
}

bool parse_shim_cache(shim_cache_results& results, byte_view data, uint32_t slack_length,
                      bool raw_mode) {
  results.clear();
  detected_shim found;
  if (!detect_shim_layout(data, found)) return false;
  shim_walk walk(results, data, found, slack_length, raw_mode);
  if (walk.layout.header_bytes >= data.size()) return false;
  switch (walk.layout.family) {
    case shim_family::slots:
      walk_slot_cache(walk);
      break;
    case shim_family::array:
      walk_array_cache(walk);
      break;
    case shim_family::chain:
      walk_chain_cache(walk);
      break;
    case shim_family::none:
      break;
  }
  return true;
}

}  // namespace ovrik
