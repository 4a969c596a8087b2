// Hives with what their transaction logs hold.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "driver/hive_opening.h"
#include "hive/hive_logs.h"
#include "hive/reg_clas.h"

namespace ovrik {

/// The logs that were found for a hive.
struct found_logs {
  std::vector<std::string> names;  ///< as the diagnostics name them
  std::vector<hive_log_source> sources;
};

/// Opens one hive with the logs given, or as stored if there are none. Nothing: it does not open.
using hive_opener =
    std::function<std::unique_ptr<reg_hive>(const std::vector<hive_log_source>& logs)>;

/// Opens a hive with its logs, and as stored if with them it does not open, has no control set, or
/// lacks a cache that the stored one has. The diagnostics tell what became of each log and how the
/// caches differ; what of a log cannot be read is a fault.
std::unique_ptr<reg_hive> open_with_logs(const hive_opener& open, const found_logs& logs,
                                         const hive_opening& opening);

/// What is put behind the name of a hive to name its logs; upper and lower case do not count.
constexpr const char* log_name_ends[] = {".LOG", ".LOG1", ".LOG2"};

}  // namespace ovrik
