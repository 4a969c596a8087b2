// The base block of a hive or of a transaction log, as far as recovery asks for it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/byte_view.h"

namespace ovrik {

/// Size in bytes of what the checksum covers, and of the copy at the start of a log.
constexpr uint32_t sealed_base_bytes = 512;

/// Where the bins stand that offsets in logs count from.
constexpr uint32_t log_bins_at = 0x1000;

/// Fields of a sound base block (registry file format, HBASE_BLOCK).
struct base_block {
  uint32_t sequence1 = 0;   ///< counted up before the file is written
  uint32_t sequence2 = 0;   ///< made equal to `sequence1` when all is written
  uint64_t time_stamp = 0;  ///< FILETIME of the last write; 0 in later systems
  uint32_t bins_bytes = 0;  ///< size of all bins
  std::string name;         ///< last component of the file name, may be empty
  byte_view rm_id;          ///< GUID of the resource manager, 16 bytes
};

/// Reads the base block at the start of `bytes`. Nothing: no "regf", fewer than 512 bytes, or a
/// checksum that is not the exclusive or of the 127 numbers in front of it.
std::optional<base_block> read_base_block(byte_view bytes);

}  // namespace ovrik
