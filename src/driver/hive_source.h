// Hive files as sources.
#pragma once

#include <memory>
#include <string>

#include "driver/hive_opening.h"
#include "hive/reg_clas.h"
#include "sources/host/device_calls.h"

namespace ovrik {

/// Opens the hive file at `path`. One that begins with a drive letter and that the running system
/// does not let us open is read from its volume. Nothing: it does not open or is no hive.
std::unique_ptr<reg_hive> open_hive_source(const std::string& path, const hive_opening& opening,
                                           const device_calls& devices = devices_of_host());

}  // namespace ovrik
