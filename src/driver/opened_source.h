// The source of a run, opened before its results are.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "driver/options/run_options.h"
#include "sources/disk/raw_disk_io.h"
#include "sources/host/read_faults.h"

namespace ovrik {

/// What the road of a source goes on with.
struct opened_source {
  std::string path;                   ///< as the results name it
  std::unique_ptr<RAW_DISK_IO> disk;  ///< of an image or of virtual disks; nothing otherwise
  uint64_t volume_offset = 0;         ///< of the volume on the disk, in bytes
};

/// Opens the disk of -image and -vmdk and finds the volume on it; finds the hive of the running
/// system and the right to read it. A hive file opens later: one that does not is no reason to stop
/// in front of the results. What of a disk cannot be read goes to `faults`, for as long as the disk
/// is in use. False: the run must stop, for a reason that has been said on standard error.
bool open_source(opened_source& opened, const source_options& source, read_faults& faults);

}  // namespace ovrik
