// One file of a virtual disk: a sparse extent of VMDK ("KDMV") with its descriptor inside.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sources/disk/vmdk_descriptor.h"
#include "sources/host/read_faults.h"
#include "sources/host/source_reader.h"

namespace ovrik {

/// What a file holds of one grain. A grain is the stretch of sectors that a virtual disk stores or
/// leaves out as a whole.
enum class grain_state {
  absent,  ///< nothing: an older file of the chain may have it
  zeroed,  ///< zeros, whatever older files hold there
  stored,  ///< its bytes
};

class vmdk_disk {
 public:
  /// What of the file cannot be read goes to `faults`.
  explicit vmdk_disk(read_faults& faults) : m_faults(faults) {}

  /// Opens the file at `path` (UTF-8) and reads its header, its descriptor and its grain tables.
  /// False: it does not open, is no such file, or its header or grain directory makes no sense.
  /// Grains whose table entry cannot be read count as zeros: whether this file or an older one
  /// holds them is not known, and bytes that are out of date must not be taken for the disk's.
  bool open_disk(const std::string& path);

  const std::string& path() const { return m_path; }
  const vmdk_descriptor& descriptor() const { return m_descriptor; }

  /// Size of the virtual disk in bytes, as the header states it.
  uint64_t capacity() const { return m_capacity_bytes; }
  /// Size of this file in bytes.
  uint64_t file_size() const { return m_file_size; }
  /// Bytes of one grain; never 0 once the disk is open.
  uint64_t grain_bytes() const { return m_grain_bytes; }

  /// What the file holds of the grain at `offset` of the virtual disk. If that is stored,
  /// `file_offset` becomes the offset of that byte in the file.
  grain_state vmdk_locate(uint64_t offset, uint64_t& file_offset) const;

  /// Reads up to `size` bytes at `file_offset`. Returns how many of them the file has, short at its
  /// end; what of them cannot be read is zeros.
  size_t read(uint8_t* buffer, size_t size, uint64_t file_offset) const;

 private:
  /// Where the entries of one grain table stand in `m_grains`, without the zeros at its end.
  struct grain_table {
    uint32_t first = 0;
    uint32_t count = 0;
    uint64_t known = 0;  ///< how many entries could be read, zeros included
  };

  bool read_header();
  bool read_tables(uint64_t directory_at, uint64_t overhead);
  bool read_whole(std::vector<uint8_t>& bytes, uint64_t size, uint64_t offset);
  void read_table(grain_table& table, uint64_t offset, uint64_t& bytes_left);

  read_faults& m_faults;
  mutable std::optional<source_reader> m_file;  ///< there once the disk is open
  std::string m_path;
  vmdk_descriptor m_descriptor;
  uint64_t m_file_size = 0;
  uint64_t m_capacity_bytes = 0;
  uint64_t m_grain_bytes = 0;
  uint32_t m_entries_per_table = 0;
  std::vector<grain_table> m_grain_directory;
  std::vector<uint32_t> m_grains;  ///< sectors of the grains of all tables; 0 for none, 1 for zeros
};

}  // namespace ovrik
