#include "sources/disk/vmdk_entries.h"

#include <algorithm>

#include "base/byte_view.h"

namespace ovrik {

namespace {

/// True if some of the bytes could not be read.
bool is_lost(const read_faults& faults, uint64_t offset, uint64_t size) {
  const std::vector<read_fault> all = faults.all();
  return std::any_of(all.begin(), all.end(), [offset, size](const read_fault& fault) {
    return fault.offset < offset + size && offset < fault.offset + fault.length;
  });
}

}  // namespace

void vmdk_entries::keep_pieces(size_t count) {
  m_pieces.assign(std::max<size_t>(count, 1), piece());
}

bool vmdk_entries::entry_at(uint32_t& value, source_reader& file, uint64_t offset,
                            read_faults& faults) {
  const uint64_t number = offset / piece_bytes;
  piece& kept = m_pieces[static_cast<size_t>(number % m_pieces.size())];
  if (kept.begin != number * piece_bytes) {
    kept.begin = number * piece_bytes;
    kept.faults.clear();
    file.read_vector(kept.bytes, piece_bytes, kept.begin, kept.faults);
    faults.add(kept.faults);
  }
  const byte_view bytes(kept.bytes);
  if (!bytes.has(offset - kept.begin, entry_bytes)) return false;
  if (!kept.faults.empty() && is_lost(kept.faults, offset, entry_bytes)) return false;
  value = bytes.u32_at(offset - kept.begin);
  return true;
}

}  // namespace ovrik
