// A mounted NTFS volume.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "sources/disk/raw_disk_io.h"
#include "sources/ntfs/mft_reader.h"

namespace ovrik {

class ntfs_volume : public mft_reader {
 public:
  /// The volume that begins `volume_offset` bytes into `disk`, which it owns from then on.
  ntfs_volume(std::unique_ptr<RAW_DISK_IO> disk, uint64_t volume_offset)
      : mft_reader(std::move(disk), volume_offset) {}

  /// Reads the boot sector and the MFT's own record. False: no NTFS stands there, or its geometry
  /// or its MFT makes no sense; nothing can then be read. Where the MFT's own record makes no sense
  /// its copy in $MFTMirr is taken.
  bool mount();

  /// True if the volume is mounted by the copy.
  bool mounted_by_mirror() const { return m_by_mirror; }

 private:
  /// Reads record 0, sizes included. False: it is no file record.
  bool read_first_record(ntfs_record_bytes& record);
  /// Gathers the pieces of the MFT, which record 0 names. False: there are none.
  bool find_mft(const ntfs_record_bytes& record);

  bool m_by_mirror = false;
};

}  // namespace ovrik
