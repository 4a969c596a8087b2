// The clock of a FILETIME: 100-nanosecond ticks since 1601-01-01.
#pragma once

#include <cstdint>

namespace ovrik {

constexpr uint64_t ticks_per_second = 10'000'000;

/// From 1601-01-01 to 1970-01-01, where the clock of POSIX begins.
constexpr uint64_t unix_epoch_seconds = 11'644'473'600;
constexpr uint64_t unix_epoch_filetime = unix_epoch_seconds * ticks_per_second;

}  // namespace ovrik
