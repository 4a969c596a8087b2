#include "sources/disk/vmdk_entries.h"

#include <algorithm>

#include "base/byte_view.h"

namespace ovrik {

void vmdk_entries::keep_pieces(size_t count) {
  m_pieces.assign(std::max<size_t>(count, 1), piece());
}

bool vmdk_entries::entry_at(uint32_t& value, const uni::fileio& file, uint64_t offset) {
  const uint64_t number = offset / piece_bytes;
  piece& kept = m_pieces[static_cast<size_t>(number % m_pieces.size())];
  if (kept.begin != number * piece_bytes) {
    kept.begin = number * piece_bytes;
    file.read_vector(kept.bytes, piece_bytes, kept.begin);  // what did not come is not there
  }
  const byte_view bytes(kept.bytes);
  if (!bytes.has(offset - kept.begin, entry_bytes)) return false;
  value = bytes.u32_at(offset - kept.begin);
  return true;
}

}  // namespace ovrik
