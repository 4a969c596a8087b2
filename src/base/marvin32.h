// The Marvin32 hash.
#pragma once

#include <cstdint>

#include "base/byte_view.h"

namespace ovrik {

/// The 64-bit Marvin32 of all of `bytes` with this seed (published as "Marvin32" with its test
/// vectors); the lower half of the seed and of the result is the one that takes the bytes.
uint64_t marvin32(byte_view bytes, uint64_t seed);

}  // namespace ovrik
