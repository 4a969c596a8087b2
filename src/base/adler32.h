// The Adler-32 checksum.
#pragma once

#include <cstdint>

#include "base/byte_view.h"

namespace ovrik {

/// The Adler-32 of all of `bytes` (RFC 1950), start value 1.
uint32_t adler32(byte_view bytes);

}  // namespace ovrik
