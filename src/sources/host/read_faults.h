// What of the evidence could not be read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sources/host/byte_source.h"

namespace ovrik {

/// Bytes of one source that side by side could not be read.
struct read_fault {
  std::string source;   ///< the path of the file, as the run names it
  uint64_t offset = 0;  ///< in bytes from the start of that file
  uint64_t length = 0;  ///< in bytes
};

/// Gathers what could not be read in the course of a run. Faults that touch are one.
class read_faults {
 public:
  void add(const std::string& source, uint64_t offset, uint64_t length);

  /// In the order in which they were met.
  const std::vector<read_fault>& all() const { return m_faults; }
  bool empty() const { return m_faults.empty(); }
  void clear() { m_faults.clear(); }

 private:
  std::vector<read_fault> m_faults;
};

}  // namespace ovrik
