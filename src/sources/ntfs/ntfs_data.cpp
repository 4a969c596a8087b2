#include "sources/ntfs/ntfs_data.h"

#include <algorithm>
#include <cstring>

#include "base/byte_view.h"
#include "sources/ntfs/lznt1.h"

namespace ovrik {

namespace {

constexpr uint64_t most_kept_bytes = 0x100000;  // of units that were decompressed

/// The first two bytes of a unit that begins with an uncompressed LZNT1 chunk of full length.
constexpr uint16_t raw_chunk_header = 0x3FFF;

/// Cuts a read of `size` bytes at `offset` where the data of `end` bytes ends.
size_t size_within(size_t size, uint64_t offset, uint64_t end) {
  return offset < end ? static_cast<size_t>(std::min<uint64_t>(size, end - offset)) : 0;
}

/// Adds a stretch, to the last one if they lie side by side.
void add_stretch(std::vector<file_stretch>& stretches, const file_stretch& added) {
  if (!stretches.empty()) {
    file_stretch& last = stretches.back();
    if (last.offset + last.length == added.offset && last.place + last.length == added.place) {
      last.length += added.length;
      return;
    }
  }
  stretches.push_back(added);
}

/// Reads `size` bytes at `offset`; between the stretches stand zeros. Returns how many bytes came
/// from the start on, before the first that cannot be read.
size_t read_stretches(ntfs_volume& volume, const std::vector<file_stretch>& stretches,
                      uint8_t* buffer, size_t size, uint64_t offset) {
  auto stretch = std::upper_bound(
      stretches.begin(), stretches.end(), offset,
      [](uint64_t place, const file_stretch& s) { return place < s.offset + s.length; });
  for (size_t done = 0; done < size;) {
    const uint64_t at = offset + done;
    const bool in_gap = stretch == stretches.end() || at < stretch->offset;
    if (in_gap) {
      const uint64_t gap = stretch == stretches.end() ? size : stretch->offset - at;
      const auto zeros = static_cast<size_t>(std::min<uint64_t>(gap, size - done));
      std::memset(buffer + done, 0, zeros);
      done += zeros;
      continue;
    }
    const uint64_t head = at - stretch->offset;
    const auto wanted =
        static_cast<size_t>(std::min<uint64_t>(stretch->length - head, size - done));
    const uint64_t came = volume.read_bytes(stretch->place + head, buffer + done, wanted);
    done += static_cast<size_t>(came);
    if (came != wanted) return done;
    ++stretch;
  }
  return size;
}

}  // namespace

bool held_data::read_at(uint8_t* buffer, size_t& size, uint64_t offset) {
  size = size_within(size, offset, m_bytes.size());
  if (size != 0) std::memcpy(buffer, m_bytes.data() + offset, size);
  return true;
}

plain_data::plain_data(std::shared_ptr<ntfs_volume> volume, const cluster_extents& extents,
                       uint64_t most)
    : m_volume(std::move(volume)) {
  const uint64_t cluster_bytes = m_volume->bytes_per_cluster();
  uint64_t vcn = 0;
  for (const cluster_extent& extent : extents) {
    // What a missing piece held is zeros, so that all behind it stays in its place.
    const uint64_t gap = std::min(extent.vcn - vcn, most / cluster_bytes + 1) * cluster_bytes;
    m_size = std::min(m_size + gap, most);
    vcn = extent.vcn + extent.clusters;
    if (extent.sparse) continue;
    const uint64_t length = std::min(extent.clusters * cluster_bytes, most - m_size);
    if (length == 0) break;
    add_stretch(m_stretches, {m_size, length, extent.lcn * cluster_bytes});
    m_size += length;
  }
}

bool plain_data::read_at(uint8_t* buffer, size_t& size, uint64_t offset) {
  const size_t wanted = size_within(size, offset, m_size);
  size = read_stretches(*m_volume, m_stretches, buffer, wanted, offset);
  return size == wanted;
}

packed_data::packed_data(std::shared_ptr<ntfs_volume> volume, cluster_extents extents,
                         uint64_t size)
    : m_volume(std::move(volume)),
      m_extents(std::move(extents)),
      m_size(size),
      m_unit_bytes(clusters_per_unit * m_volume->bytes_per_cluster()) {}

packed_data::stored_unit packed_data::find_unit(uint64_t number) const {
  const uint64_t cluster_bytes = m_volume->bytes_per_cluster();
  const uint64_t first = number * clusters_per_unit;
  const uint64_t end = std::min(first + clusters_per_unit, end_vcn(m_extents));
  stored_unit unit;
  unit.length = end > first ? (end - first) * cluster_bytes : 0;
  uint64_t stored = 0;
  auto extent = std::upper_bound(
      m_extents.begin(), m_extents.end(), first,
      [](uint64_t vcn, const cluster_extent& e) { return vcn < e.vcn + e.clusters; });
  for (; extent != m_extents.end() && extent->vcn < end; ++extent) {
    if (extent->sparse) continue;
    const uint64_t from = std::max(extent->vcn, first);
    const uint64_t length = (std::min(extent->vcn + extent->clusters, end) - from) * cluster_bytes;
    add_stretch(unit.stretches, {(from - first) * cluster_bytes, length,
                                 (extent->lcn + (from - extent->vcn)) * cluster_bytes});
    stored += length;
  }
  unit.has_hole = stored != unit.length;
  return unit;
}

/// True for a unit that is stored as it is: one without a hole. Where clusters are missing at the
/// end of the last unit, a hole may be what is missing, and the first bytes decide.
bool packed_data::is_raw(const stored_unit& unit) {
  if (unit.has_hole) return false;
  if (unit.length == m_unit_bytes) return true;
  std::vector<uint8_t> start(sizeof raw_chunk_header);
  read_stretches(*m_volume, unit.stretches, start.data(), start.size(), 0);
  return byte_view(start).u16_at(0) != raw_chunk_header;
}

std::vector<uint8_t> packed_data::decompress(const stored_unit& unit, uint64_t wanted) {
  std::vector<uint8_t> stored(static_cast<size_t>(unit.length));
  std::vector<uint8_t> plain;
  const size_t came = read_stretches(*m_volume, unit.stretches, stored.data(), stored.size(), 0);
  if (came != stored.size()) {
    decompress_chunks(plain, byte_view(stored).clip(0, came), wanted);
    return plain;
  }
  if (unit.stretches.empty() || decompress_unit(plain, byte_view(stored), wanted)) {
    plain.resize(static_cast<size_t>(wanted));
  }
  return plain;
}

const packed_data::plain_unit& packed_data::decompressed(uint64_t number, const stored_unit& unit) {
  const auto kept = std::find_if(m_kept.begin(), m_kept.end(),
                                 [number](const plain_unit& k) { return k.number == number; });
  if (kept != m_kept.end()) {
    m_kept.splice(m_kept.begin(), m_kept, kept);
    return m_kept.front();
  }
  const size_t most_kept =
      static_cast<size_t>(std::max<uint64_t>(most_kept_bytes / m_unit_bytes, 1));
  while (m_kept.size() >= most_kept) m_kept.pop_back();
  const uint64_t wanted = std::min(m_unit_bytes, m_size - number * m_unit_bytes);
  m_kept.push_front({number, decompress(unit, wanted)});
  return m_kept.front();
}

bool packed_data::read_at(uint8_t* buffer, size_t& size, uint64_t offset) {
  const size_t wanted = size_within(size, offset, m_size);
  for (size = 0; size < wanted;) {
    const uint64_t number = (offset + size) / m_unit_bytes;
    const uint64_t head = (offset + size) % m_unit_bytes;
    const auto piece = static_cast<size_t>(std::min<uint64_t>(m_unit_bytes - head, wanted - size));
    const stored_unit unit = find_unit(number);
    size_t came = 0;
    if (is_raw(unit)) {
      came = read_stretches(*m_volume, unit.stretches, buffer + size, piece, head);
    } else {
      const byte_view found = byte_view(decompressed(number, unit).bytes).clip(head, piece);
      found.copy_to({buffer + size, piece});
      came = found.size();
    }
    size += came;
    if (came != piece) return false;
  }
  return true;
}

bool read_whole_data(byte_source& data, uni::memory_block& bytes) {
  constexpr uint64_t read_bytes = 0x100000;
  constexpr uint64_t sector_bytes = 512;
  if (data.size() == 0 || !bytes.allocate(static_cast<size_t>(data.size()))) return false;
  for (uint64_t done = 0; done < data.size();) {
    auto size = static_cast<size_t>(std::min(read_bytes, data.size() - done));
    const bool whole = data.read_at(bytes.data() + done, size, done);
    done += size;
    if (!whole) done += sector_bytes - done % sector_bytes;
  }
  return true;
}

}  // namespace ovrik
