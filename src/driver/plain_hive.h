// Hive files as the host gives them.
#pragma once

#include <memory>
#include <string>

#include "driver/hive_opening.h"
#include "hive/reg_clas.h"

namespace ovrik {

/// Opens the hive file at `path`, with the logs beside it if that is asked for. Nothing: it does
/// not open or is no hive.
std::unique_ptr<reg_hive> open_plain_hive(const std::string& path, const hive_opening& opening);

}  // namespace ovrik
