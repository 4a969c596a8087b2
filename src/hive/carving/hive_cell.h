// A cell of a hive: an i32 with its size, which is negative while the cell is in use, and then its
// content (registry hive cell). Offsets of cells that are stored in a hive count from the end of
// the base block.
#pragma once

#include <cstdint>

#include "base/byte_view.h"

namespace ovrik {

/// Length of the base block (registry "regf" header) in bytes.
constexpr uint32_t base_block_bytes = 4096;

namespace cell {
constexpr uint32_t size_at = 0;
constexpr uint32_t content_at = 4;    ///< where the signature of a cell that has one stands
constexpr uint32_t offset_bytes = 4;  ///< of one entry in a list of cell offsets
}  // namespace cell

/// Size of the cell that `bytes` begin with, its size field included, be it in use or free.
inline uint32_t cell_size(byte_view bytes) {
  const uint32_t size = bytes.u32_at(cell::size_at);
  return size >> 31 != 0 ? 0 - size : size;
}

/// The "db" cell of a value of more than 16,344 bytes (registry big data): it leads to a list of
/// the cells that hold the value, the segments. Places count from the size field.
namespace db_cell_fields {
constexpr uint32_t segment_count_at = 6;  ///< u16
constexpr uint32_t segment_list_at = 8;   ///< offset of the cell with the list
constexpr uint32_t bytes = 16;            ///< of a whole cell
}  // namespace db_cell_fields

}  // namespace ovrik
