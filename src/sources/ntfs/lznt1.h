// LZNT1, the compression of NTFS files (COMPRESSION_FORMAT_LZNT1).
#pragma once

#include <cstdint>
#include <vector>

#include "base/byte_view.h"

namespace ovrik {

/// Decompresses one compression unit of a file and appends at most `wanted` bytes of it to `out`. A
/// unit that is no valid sequence of chunks is taken as stored without compression, unless its last
/// 4096 bytes are zeros. False: nothing usable is in it; `out` is then as it was.
bool decompress_unit(std::vector<uint8_t>& out, byte_view unit, uint64_t wanted);

/// Appends at most `wanted` bytes of the chunks that lie wholly in `start`, the first part of a
/// unit whose rest is lost, up to the first that is not valid.
void decompress_chunks(std::vector<uint8_t>& out, byte_view start, uint64_t wanted);

}  // namespace ovrik
