// The base block of a hive file ("regf") and the place that its cell offsets count from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/byte_view.h"

namespace ovrik {

/// What the offsets stored in the hive in hand are relative to: the place of its first bin. One
/// value for the process, set by every header check, so that one hive can be in use at a time.
extern uint32_t hive_base;

/// The least size in bytes of anything that can be a hive.
constexpr uint32_t least_hive_bytes = 4496;

/// True if `start`, the first part of a hive, has a base block but no bin in the usual place, so
/// that the first bin has to be searched for.
bool needs_bin_search(byte_view start);

/// Checks the base block in `bytes`, the first part of a hive of `hive_size` bytes, sets
/// `hive_base` and tells the absolute position of the root cell and the hive's name: the last
/// component of the file name in the base block, which may be empty. Neither the checksum nor the
/// sequence numbers count. False, with the results kept: no base block, or no bin in `bytes`.
bool check_hive_header(byte_view bytes, uint64_t hive_size, uint32_t& root_offset,
                       std::string& name);

}  // namespace ovrik
