// A mounted NTFS volume: its geometry, its records and its clusters.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "sources/disk/raw_disk_io.h"
#include "sources/ntfs/ntfs_record.h"
#include "sources/ntfs/ntfs_runs.h"

namespace ovrik {

/// A record's bytes after the repair of its sector ends.
using ntfs_record_bytes = std::vector<uint8_t>;

class ntfs_volume {
 public:
  /// The volume that begins `volume_offset` bytes into `disk`, which it owns from then on.
  ntfs_volume(std::unique_ptr<RAW_DISK_IO> disk, uint64_t volume_offset)
      : m_disk(std::move(disk)), m_volume_offset(volume_offset) {}

  /// Reads the boot sector and the MFT's own record. False: no NTFS stands there, or its geometry
  /// or its MFT makes no sense; nothing can then be read.
  bool mount();

  uint32_t bytes_per_cluster() const { return m_bytes_per_cluster; }
  uint64_t disk_size() const { return m_disk->size(); }
  uint64_t stored_size() const { return m_disk->stored_size(); }

  /// Reads MFT record `entry`. False: it lies outside the MFT, cannot be read whole, or is neither
  /// a file record nor an index block. `record` is then empty, or a damaged ("BAAD") record as it
  /// stands.
  bool read_mft_record(uint64_t entry, ntfs_record_bytes& record);

  /// Puts the sector ends of an index block back. False: it is none.
  bool apply_block_fixups(std::vector<uint8_t>& block) const {
    return apply_fixups(block, m_bytes_per_sector);
  }

  /// Counts a step from a record to another that it names. False: there were more of them than four
  /// for each record that the disk can hold, so that the lists must name the same over and over.
  bool follow_reference();

  /// Reads clusters that lie side by side: as many whole clusters from `lcn` on as `size` bytes
  /// hold. Returns how many bytes came from the start on, in whole clusters, before the first
  /// cluster that cannot be read.
  uint64_t read_clusters(uint64_t lcn, uint8_t* buffer, uint64_t size);

 private:
  bool read_boot_sector();
  bool read_first_record();
  bool read_at(uint64_t offset, uint8_t* buffer, uint64_t size);
  bool read_mft_bytes(uint64_t position, uint8_t* buffer, uint64_t size);
  bool read_raw_record(uint64_t entry, ntfs_record_bytes& record);

  /// Records read ahead of those asked for.
  struct read_ahead {
    uint64_t first_entry = 0;
    uint64_t last_asked = 0;
    std::vector<uint8_t> bytes;
  };

  std::unique_ptr<RAW_DISK_IO> m_disk;
  uint64_t m_volume_offset;
  uint32_t m_bytes_per_sector = 0;
  uint32_t m_bytes_per_cluster = 0;
  uint64_t m_mft_offset = 0;    ///< of record 0, from the volume's start, in bytes
  uint32_t m_record_bytes = 0;  ///< of record 0
  uint32_t m_record_size = 0;   ///< of every other record, as record 0 tells
  cluster_extents m_mft_extents;
  read_ahead m_ahead;
  uint64_t m_references_left = 0;
};

}  // namespace ovrik
