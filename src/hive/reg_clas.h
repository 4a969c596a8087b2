// A registry hive held in memory and the addressing of its cells.
//
// The hive is read as stored: no transaction log is applied, nothing is repaired, and very few
// header fields are trusted, so that a cut, dirty or odd hive gives what it still holds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/byte_view.h"
#include "sources/memory_block.h"

namespace ovrik {

class reg_hive {
 public:
  /// Reads the whole hive file at `path` (UTF-8). `ok` false: it does not open, has 4,496 bytes or
  /// fewer or more than 0x2FFFFFFF, has no base block or no bin in its first 64 KiB, or there is
  /// no memory for it; every operation on the hive then fails.
  reg_hive(const std::string& path, bool& ok);

  bool usable() const { return m_image.data() != nullptr; }

  /// Size of the hive in bytes.
  uint32_t size() const { return static_cast<uint32_t>(m_image.size()); }

  /// The bytes from the cell at the absolute position `pos` to the hive's end, the cell's size
  /// field first. A negative position that is not further in front of the hive than the hive is
  /// long has a cell of no bytes, and so has the position just behind the hive. Nothing: the
  /// position is further away.
  std::optional<byte_view> cell_at(uint32_t pos) const;

  /// Position of the root cell and the kind name of the hive: the name in the base block or, if
  /// that is empty, the one that the root's subkeys tell; it may stay empty. False: the hive is
  /// not usable.
  bool get_root(uint32_t& root_offset, std::string& name) const;

 private:
  uni::memory_block m_image;
  uint32_t m_root_offset = 0;
  std::string m_name;
};

}  // namespace ovrik
