#include "shim/shim_walk.h"

namespace ovrik {

namespace {

/// Four times the largest cache that is read. Entries that point to one another's paths could
/// otherwise make a small cache ask for any amount of memory.
constexpr uint64_t most_path_bytes = 0x4000000;

step_outcome step(shim_walk& walk, shim_cache_entry& entry) {
  switch (walk.layout().family) {
    case shim_family::slots:
      return step_to_slot(walk, entry);
    case shim_family::array:
      return step_in_array(walk, entry);
    case shim_family::chain:
      return step_along_chain(walk, entry);
    case shim_family::none:
      break;
  }
  return step_outcome::ended;
}

}  // namespace

shim_walk::shim_walk(byte_view buffer, const detected_shim& detected, uint32_t slack_length,
                     bool raw_mode)
    : path_limit(static_cast<int64_t>(buffer.size())),
      m_data(buffer),
      m_layout(&layout_facts(detected.layout)),
      m_entry_count(detected.entry_count),
      m_slack_length(slack_length),
      m_raw_mode(raw_mode),
      m_offset(m_layout->header_bytes) {
  for (size_t i = 0; i < m_signature.size(); ++i) {
    m_signature[i] = static_cast<char>(m_data.u8_at(m_offset + chain_entry::signature_at + i));
  }
}

bool shim_walk::next(shim_cache_entry& entry) {
  while (!rest().empty()) {
    entry = {};
    entry.entry_number = m_running_number++;
    entry.entry_offset = static_cast<uint32_t>(m_offset);
    entry.in_slack = m_offset + m_slack_length >= m_data.size();
    const step_outcome outcome = step(*this, entry);
    if (outcome != step_outcome::skipped) return outcome == step_outcome::entry;
  }
  return false;
}

shim_cache_entry shim_walk::entry_at(const shim_step& step) const {
  shim_walk again = *this;
  again.m_offset = step.offset;
  again.m_running_number = step.number;
  again.m_path_bytes = 0;
  again.path_limit = static_cast<int64_t>(m_data.size());
  shim_cache_entry entry;
  again.next(entry);
  return entry;
}

bool shim_walk::take_path(shim_cache_entry& entry, byte_view path) {
  m_path_bytes += path.size();
  if (m_path_bytes > most_path_bytes) return false;
  m_any_valid = true;
  entry.valid = true;
  entry.layout = m_layout->layout;
  entry.path = path;
  return true;
}

}  // namespace ovrik
