// LZNT1, the compression of NTFS files.
#pragma once

#include <cstdint>
#include <vector>

#include "base/byte_view.h"

namespace ovrik {

/// Appends the bytes that a compression unit of a compressed file holds to `out`, at most `wanted`
/// of them. A unit that is no valid sequence of chunks is taken as stored, unless its last 4096
/// bytes are zeros. False: nothing usable is in it; `out` then holds what came before.
bool decompress_unit(std::vector<uint8_t>& out, byte_view unit, uint64_t wanted);

}  // namespace ovrik
