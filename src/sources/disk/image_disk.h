// Images of disks and volumes as sources.
#pragma once

#include <memory>
#include <string>

#include "sources/disk/raw_disk_io.h"

namespace ovrik {

/// Opens an image file or, by a name as Windows gives it, a device (UTF-8 path). Nothing: it does
/// not open.
std::unique_ptr<RAW_DISK_IO> open_image(const std::string& path);

}  // namespace ovrik
