// The clusters and the MFT records of an NTFS volume.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "sources/disk/raw_disk_io.h"
#include "sources/ntfs/ntfs_record.h"
#include "sources/ntfs/ntfs_runs.h"

namespace ovrik {

/// A record's bytes after the repair of its sector ends.
using ntfs_record_bytes = std::vector<uint8_t>;

/// Reads by cluster and by record. Where the MFT lies, beyond its own record, is for `ntfs_volume`
/// to find, which this is a part of.
class mft_reader {
 public:
  uint32_t bytes_per_cluster() const { return m_bytes_per_cluster; }
  uint64_t disk_size() const { return m_disk->size(); }           ///< in bytes
  uint64_t stored_size() const { return m_disk->stored_size(); }  ///< in bytes

  /// Reads MFT record `entry`. False: it lies outside the MFT, cannot be read whole, or is neither
  /// a file record nor an index block. `record` is then empty, or a damaged ("BAAD") record as it
  /// stands.
  bool read_mft_record(uint64_t entry, ntfs_record_bytes& record);

  /// Puts the sector ends of an index block back. False: it is none.
  bool apply_block_fixups(std::vector<uint8_t>& block) const {
    return apply_fixups(block, m_bytes_per_sector);
  }

  // What a volume claims is no more than what its disk can hold. Each bound leaves room for a disk
  // that was cut, which holds less than what stands in its records.

  /// The extents that one attribute, or the MFT, can have.
  size_t most_extents() const;

  /// The entries that one directory can have.
  size_t most_children() const;

  /// Counts a step from a record to another that it names. False: there were more of them than four
  /// for each record that the disk can hold, so that the lists must name the same over and over.
  bool follow_reference();

  /// Counts `bytes` of an attribute list that stands in clusters. False: there were more than twice
  /// as many as the disk stores, so that records must share their lists.
  bool take_list_bytes(uint64_t bytes);

  /// Reads clusters that lie side by side: as many whole clusters from `lcn` on as `size` bytes
  /// hold. Returns how many bytes came from the start on, in whole clusters, before the first
  /// cluster that cannot be read.
  uint64_t read_clusters(uint64_t lcn, uint8_t* buffer, uint64_t size);

  /// Reads `size` bytes from `offset` of the volume. Returns how many came from the start on,
  /// before the first sector that cannot be read.
  uint64_t read_bytes(uint64_t offset, uint8_t* buffer, uint64_t size);

 protected:
  mft_reader(std::unique_ptr<RAW_DISK_IO> disk, uint64_t volume_offset)
      : m_disk(std::move(disk)), m_volume_offset(volume_offset) {}

  /// Reads the geometry; record 0 can be read from then on. False: no NTFS stands there, or the
  /// geometry makes no sense.
  bool read_boot_sector();

  /// Has record 0 read from $MFTMirr, and forgets what is known of the MFT. False: the boot sector
  /// names no other place for it than the one that is in use.
  bool turn_to_mirror();

  /// The size of record 0, which may be larger than the boot sector states.
  uint32_t first_record_bytes() const { return m_first_record_bytes; }
  void set_first_record_bytes(uint32_t bytes) { m_first_record_bytes = bytes; }

  /// Sets the size of every other record, which must be one that `is_record_size` takes.
  void set_record_bytes(uint32_t bytes);

  /// Adds a piece of the MFT, whose records can be read from then on: where pieces overlap, from
  /// one of them.
  void add_mft_piece(byte_view runs, uint64_t first_vcn);

  /// Puts the pieces into their places among the `clusters` of the MFT. False: there are none.
  bool place_mft(uint64_t clusters);

 private:
  /// Reads from `offset` of the volume. False: not all `size` bytes came.
  bool read_at(uint64_t offset, uint8_t* buffer, uint64_t size);
  /// Reads from `mft_offset` of the MFT's own data. False: not all `size` bytes came.
  bool read_mft_bytes(uint64_t mft_offset, uint8_t* buffer, uint64_t size);
  bool read_raw_record(uint64_t entry, ntfs_record_bytes& record);

  /// Records read ahead of those asked for.
  struct read_ahead {
    uint64_t first_entry = 0;
    uint64_t last_asked = 0;
    uint64_t failed_until = 0;  ///< no entry below is read ahead, since that has failed
    std::vector<uint8_t> bytes;

    bool holds(uint64_t entry, uint32_t record_bytes) const {
      return entry >= first_entry && (entry - first_entry) * record_bytes < bytes.size();
    }
  };

  std::unique_ptr<RAW_DISK_IO> m_disk;
  uint64_t m_volume_offset;  ///< in bytes
  uint32_t m_bytes_per_sector = 0;
  uint32_t m_bytes_per_cluster = 0;
  uint64_t m_mirror_offset = 0;                  ///< of the copy of record 0
  uint32_t m_stated_record_bytes = 0;            ///< of record 0, as the boot sector has it
  uint64_t m_mft_offset = 0;                     ///< of record 0, from the volume's start, in bytes
  uint32_t m_first_record_bytes = 0;             ///< of record 0
  uint32_t m_record_bytes = 0;                   ///< of every other record
  cluster_extents m_mft_pieces;                  ///< as they came, while the volume is mounted
  std::map<uint64_t, cluster_extent> m_mft_map;  ///< by VCN
  read_ahead m_ahead;
  uint64_t m_references_left = 0;
  uint64_t m_list_bytes_left = 0;
};

}  // namespace ovrik
