// Numbers of a VMDK's grain directory and grain tables, read when they are first asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sources/host/read_faults.h"
#include "sources/host/source_reader.h"

namespace ovrik {

/// The entries (u32 each) of one file, with the pieces of it that were read last. A piece holds
/// several tables, so that those that lie side by side come in one read.
class vmdk_entries {
 public:
  static constexpr size_t entry_bytes = 4;
  static constexpr size_t piece_bytes = 0x4000;

  /// Sets how many pieces are kept at most; at least one is. Those that were read are dropped.
  void keep_pieces(size_t count);

  /// Reads the entry at `offset`, a multiple of four, of `file`, which is the same in each call.
  /// False: the file ends in front of the entry's end, or it cannot be read. What of the piece
  /// around it cannot be read goes to `faults`.
  bool entry_at(uint32_t& value, source_reader& file, uint64_t offset, read_faults& faults);

 private:
  struct piece {
    uint64_t begin = ~uint64_t{0};  ///< offset of the piece in the file
    std::vector<uint8_t> bytes;     ///< as many as the file has there
    read_faults faults;             ///< what of them could not be read
  };

  /// A piece has one place among these, so that it takes that of another one.
  std::vector<piece> m_pieces = std::vector<piece>(1);
};

}  // namespace ovrik
