// One file of a virtual disk: a sparse extent of VMDK ("KDMV") with its descriptor inside.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sources/disk/vmdk_descriptor.h"
#include "sources/disk/vmdk_entries.h"
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

/// A stretch of the virtual disk that one file holds in one way.
struct grain_run {
  grain_state state = grain_state::absent;
  uint64_t file_offset = 0;  ///< where it begins in the file, if it is stored
  uint64_t size = 0;         ///< in bytes; up to the end of its grain, or of several absent ones
};

class vmdk_disk {
 public:
  /// What of the file cannot be read goes to `faults`.
  explicit vmdk_disk(read_faults& faults) : m_faults(faults) {}

  /// Opens the file at `path` (UTF-8) and reads its header and its descriptor. False: it does not
  /// open, is no such file, or its header or the place of its grain directory makes no sense.
  bool open_disk(const std::string& path);

  const std::string& path() const { return m_path; }
  const vmdk_descriptor& descriptor() const { return m_descriptor; }

  /// Size of the virtual disk in bytes, as the header states it.
  uint64_t capacity() const { return m_capacity_bytes; }
  /// Size of this file in bytes.
  uint64_t file_size() const { return m_file_size; }

  /// True if its grains are compressed (streamOptimized), which are not unpacked.
  bool is_compressed() const { return m_compressed; }

  /// Sets how many pieces of the directory and of the tables are kept once they were read.
  void keep_pieces(size_t count);

  /// What the file holds of the virtual disk from `offset` on. Grains whose table or table entry
  /// cannot be read count as zeros: whether this file or an older one holds them is not known, and
  /// bytes that are out of date must not be taken for the disk's.
  grain_run vmdk_locate(uint64_t offset);

  /// Reads up to `size` bytes at `file_offset`. Returns how many of them the file has, short at its
  /// end; what of them cannot be read is zeros.
  size_t read(uint8_t* buffer, size_t size, uint64_t file_offset) const;

 private:
  bool read_header();
  bool read_whole(std::vector<uint8_t>& bytes, uint64_t size, uint64_t offset);
  bool entry_at(vmdk_entries& entries, uint32_t& value, uint64_t offset);
  bool place_directory(uint64_t directory_at, uint64_t overhead);
  grain_run run_in_table(uint64_t table_at, uint64_t entry, uint64_t in_grain);
  uint64_t bytes_of(uint64_t grains) const;

  read_faults& m_faults;
  mutable std::optional<source_reader> m_file;  ///< there once the disk is open
  std::string m_path;
  vmdk_descriptor m_descriptor;
  bool m_compressed = false;
  uint64_t m_file_size = 0;
  uint64_t m_capacity_bytes = 0;
  uint64_t m_grain_bytes = 0;
  uint32_t m_entries_per_table = 0;
  uint64_t m_directory_at = 0;  ///< of its first entry in the file
  uint64_t m_table_count = 0;   ///< entries of the directory
  vmdk_entries m_directory;
  vmdk_entries m_tables;
  uint64_t m_absent_begin = 0;  ///< a stretch of the virtual disk that is known to be absent
  uint64_t m_absent_end = 0;
};

}  // namespace ovrik
