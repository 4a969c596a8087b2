// A registry hive and the addressing of its cells.
//
// The hive is read as stored: no transaction log is applied, nothing is repaired, and very few
// header fields are trusted, so that a cut, dirty or odd hive gives what it still holds.
//
// The bytes of a hive have their place in memory from the start, but come from the file block by
// block when they are first asked for: a run looks at a few hundred cells of a hive of many
// megabytes. A block that cannot be read is zeros.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/byte_view.h"
#include "sources/host/byte_source.h"
#include "sources/host/fileio.h"

namespace ovrik {

class reg_hive {
 public:
  /// Opens the hive file at `path` (UTF-8). `ok` false: it does not open, has 4,496 bytes or fewer
  /// or more than 0x2FFFFFFF, has no base block or no bin in its first 64 KiB, or there is no
  /// memory for it; every operation on the hive then fails.
  reg_hive(const std::string& path, bool& ok);

  /// Takes the hive that `source` holds, of any size up to 2 GiB - 1; its first bin may then stand
  /// anywhere. `ok` false: fewer than 4,496 bytes, no base block, no bin or no memory for it.
  reg_hive(std::unique_ptr<byte_source> source, bool& ok);

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
  bool make_room(uint64_t size);
  void load_blocks(size_t begin, size_t end) const;
  size_t read_source(uint8_t* buffer, size_t size, uint64_t offset) const;

  uni::fileio m_file;
  std::unique_ptr<byte_source> m_source;  ///< of a hive that is no file
  uint32_t m_filesize = 0;
  std::unique_ptr<uint8_t[]> m_image;
  bool m_usable = false;
  mutable std::vector<bool> m_loaded;  ///< which blocks of the image have come
  uint32_t m_root_offset = 0;
  std::string m_name;
};

}  // namespace ovrik
