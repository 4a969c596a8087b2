// Disks and volumes of a running Windows as sources.
#pragma once

#include <memory>
#include <string>

#include "sources/disk/raw_disk_io.h"
#include "sources/host/device_calls.h"

namespace ovrik {

/// What a path names, as far as the way of opening goes.
enum class device_kind {
  volume,          ///< a drive letter ("c:", "C:\") or a device of whatever kind
  device,          ///< a device that knows its geometry, as a shadow copy
  physical_drive,  ///< the first drive; the path is not looked at
};

/// Opens a device (UTF-8 path). A path of at most 3 characters that begins with a letter is a drive
/// letter. Nothing: the device does not open, or it does not tell its geometry, which only a volume
/// with a longer path need not tell.
std::unique_ptr<RAW_DISK_IO> open_device(device_kind kind, const std::string& path,
                                         const device_calls& calls = devices_of_host());

/// True if the path begins as the names of devices do on Windows. Files can be named so as well.
bool is_device_path(const std::string& path);

}  // namespace ovrik
