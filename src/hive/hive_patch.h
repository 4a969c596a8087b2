// Bytes that replace others in a hive when it is read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "base/byte_view.h"

namespace ovrik {

/// A set of replacements, held as pieces that do not overlap. It does not own their bytes. n
/// replacements cost n log n in time, and memory for 2n pieces at most.
class hive_patch {
 public:
  /// From now on `bytes` stand at `offset` of the hive, instead of whatever was put there before.
  void put(uint64_t offset, byte_view bytes);

  /// Overwrites what is replaced in the `size` bytes of `buffer`, which were read from the hive at
  /// `offset`. The pieces are found by bisection.
  void apply(uint64_t offset, uint8_t* buffer, size_t size) const;

  /// Where a hive of `size` bytes ends with the replacements that begin inside it or go on without
  /// a gap at its end: never more than `size` and all that was put.
  uint64_t end_behind(uint64_t size) const;

  /// The pieces by their offsets in the hive.
  const std::map<uint64_t, byte_view>& pieces() const { return m_pieces; }
  bool empty() const { return m_pieces.empty(); }

 private:
  std::map<uint64_t, byte_view> m_pieces;
};

}  // namespace ovrik
