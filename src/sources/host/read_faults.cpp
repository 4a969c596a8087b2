#include "sources/host/read_faults.h"

#include <algorithm>

namespace ovrik {

void read_faults::add(const std::string& source, uint64_t offset, uint64_t length) {
  if (length == 0) return;
  auto known = std::find_if(m_sources.begin(), m_sources.end(),
                            [&](const auto& entry) { return entry.first == source; });
  if (known == m_sources.end()) known = m_sources.insert(known, {source, {}});
  stretches& all = known->second;
  uint64_t end = offset + length;
  auto next = all.upper_bound(offset);
  if (next != all.begin() && std::prev(next)->second >= offset) --next;
  while (next != all.end() && next->first <= end) {
    offset = std::min(offset, next->first);
    end = std::max(end, next->second);
    next = all.erase(next);
  }
  all.emplace(offset, end);
}

void read_faults::add(const read_faults& other) {
  for (const read_fault& fault : other.all()) add(fault.source, fault.offset, fault.length);
}

std::vector<read_fault> read_faults::all() const {
  std::vector<read_fault> faults;
  for (const auto& [source, stretches_of_source] : m_sources) {
    for (const auto& [begin, end] : stretches_of_source) {
      faults.push_back({source, begin, end - begin});
    }
  }
  return faults;
}

}  // namespace ovrik
