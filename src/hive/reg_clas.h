// A registry hive and the addressing of its cells.
//
// The hive is read as stored, unless its transaction logs are given: nothing is repaired, and very
// few header fields are trusted, so that a cut, dirty or odd hive gives what it still holds.
//
// The bytes of a hive have their place in memory from the start, but come from the file block by
// block when they are first asked for: a run looks at a few hundred cells of a hive of many
// megabytes. What cannot be read of them is zeros, and is told.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/byte_view.h"
#include "hive/hive_header.h"
#include "hive/hive_logs.h"
#include "sources/host/read_faults.h"
#include "sources/host/source_reader.h"

namespace ovrik {

/// What is taken for a hive, in bytes.
struct hive_limits {
  uint64_t least;
  uint64_t most;
  uint64_t bin_search;  ///< how far from its start the first bin may stand
};

constexpr hive_limits limits_of_hives_in_volumes = {least_hive_bytes, 0x7FFFFFFF, 0x7FFFFFFF};
constexpr hive_limits limits_of_hive_files = {least_hive_bytes + 1, 0x2FFFFFFF, 0x10000};

class reg_hive {
 public:
  /// Opens the hive that `source` holds and lays over it what its `logs` hold, which are read at
  /// once. What of the hive cannot be read goes to `faults`, which is used for as long as the hive
  /// is. `ok` false: its size is outside the limits, it has no base block or no bin where one may
  /// stand, or there is no memory for it; every operation on the hive then fails.
  reg_hive(source_reader source, const hive_limits& limits, read_faults& faults, bool& ok,
           const std::vector<hive_log_source>& logs = {});

  /// What the logs make of the hive; nothing without logs.
  const hive_replay& replay() const { return m_replay; }

  bool usable() const { return m_usable; }

  /// Size of the hive in bytes.
  uint32_t size() const { return m_filesize; }

  /// The start of the cell at the absolute position `pos`, its size field first, as far as the
  /// fixed fields of any record reach. `pos` is taken for a signed number: from -size to -1, and at
  /// the size itself, the view is empty; further out there is nothing.
  std::optional<byte_view> cell_at(uint32_t pos) const;

  /// The `length` bytes from the absolute position `pos` on, cut where the hive ends; none if the
  /// position lies outside.
  byte_view bytes_at(uint32_t pos, uint64_t length) const;

  /// Absolute position of the root cell.
  uint32_t root_offset() const { return m_root_offset; }

  /// The hive's name as the base block has it; it may be empty.
  const std::string& stored_name() const { return m_name; }

 private:
  /// Checks the base block; `searched` is where the first bin may stand.
  bool check(byte_view searched);
  void load_blocks(size_t begin, size_t end) const;

  mutable source_reader m_source;
  read_faults& m_faults;
  hive_replay m_replay;
  uint32_t m_filesize = 0;
  std::unique_ptr<uint8_t[]> m_image;
  bool m_usable = false;
  mutable std::vector<bool> m_loaded;  ///< which blocks of the image have come
  uint32_t m_root_offset = 0;
  std::string m_name;
};

}  // namespace ovrik
