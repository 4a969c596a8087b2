// What of the evidence could not be read.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace ovrik {

/// Bytes of one source that side by side could not be read.
struct read_fault {
  std::string source;   ///< the path of the file, as the run names it
  uint64_t offset = 0;  ///< in bytes from the start of that file
  uint64_t length = 0;  ///< in bytes
};

/// Gathers what could not be read in the course of a run. Faults that touch or overlap are one:
/// what was tried twice counts once.
class read_faults {
 public:
  void add(const std::string& source, uint64_t offset, uint64_t length);

  /// Adds all that `other` holds.
  void add(const read_faults& other);

  /// The sources in the order in which they were met, the faults of each by their offsets.
  std::vector<read_fault> all() const;
  bool empty() const { return m_sources.empty(); }
  void clear() { m_sources.clear(); }

 private:
  using stretches = std::map<uint64_t, uint64_t>;  ///< where each ends by where it begins

  std::vector<std::pair<std::string, stretches>> m_sources;
};

}  // namespace ovrik
