// The source of a run, opened before its results are.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/diagnostics_log.h"
#include "driver/options/run_options.h"
#include "sources/disk/container_kind.h"
#include "sources/disk/raw_disk_io.h"
#include "sources/host/read_faults.h"

namespace ovrik {

/// What the road of a source goes on with.
struct opened_source {
  std::string path;                   ///< as the results name it
  std::unique_ptr<RAW_DISK_IO> disk;  ///< of an image or of virtual disks; nothing otherwise
  uint64_t volume_offset = 0;         ///< of the volume on the disk, in bytes
  container_kind kind = container_kind::none;  ///< why the disk may have no hive that can be read
};

/// Opens the disk of -image and -vmdk and finds the volume on it; finds the hive of the running
/// system and the right to read it. Which volume it is goes to the diagnostics, and what of a disk
/// cannot be read to `faults`, for as long as the disk is in use. A hive file opens later: one that
/// does not is no reason to stop in front of the results. False: the run must stop, for a reason
/// that has been said on standard error.
bool open_source(opened_source& opened, const source_options& source, diagnostics_log& log,
                 read_faults& faults);

}  // namespace ovrik
