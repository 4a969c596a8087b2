#include "sources/host/read_faults.h"

namespace ovrik {

void read_faults::add(const std::string& source, uint64_t offset, uint64_t length) {
  if (!m_faults.empty()) {
    read_fault& last = m_faults.back();
    if (last.source == source && last.offset + last.length == offset) {
      last.length += length;
      return;
    }
  }
  m_faults.push_back({source, offset, length});
}

}  // namespace ovrik
