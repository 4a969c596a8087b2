// A disk of which what cannot be read costs no more than itself.
#pragma once

#include <memory>
#include <string>

#include "sources/disk/raw_disk_io.h"
#include "sources/host/read_faults.h"

namespace ovrik {

/// Gives `disk`, which may be nothing, back as one whose reads come whole up to its end: what
/// cannot be read is tried again as `source_reader` does, is then zeros and goes to `faults` under
/// the name of the disk. `faults` is used for as long as the disk is.
std::unique_ptr<RAW_DISK_IO> retried_disk(std::unique_ptr<RAW_DISK_IO> disk,
                                          const std::string& name, read_faults& faults);

}  // namespace ovrik
