#include "sources/ntfs/mft_reader.h"

#include <algorithm>
#include <iterator>

#include "base/byte_view.h"
#include "sources/disk/boot_sector.h"

namespace ovrik {

namespace {

// The boot sector (NTFS BIOS parameter block).
constexpr size_t sectors_per_cluster_at =
    13;                                    // u8; above 128: 2 to the power of 256 less the value
constexpr size_t mft_lcn_at = 48;          // u64, MftStartLcn
constexpr size_t mirror_lcn_at = 56;       // u64, Mft2StartLcn
constexpr size_t record_clusters_at = 64;  // i8; negative: 2 to the power of its magnitude bytes

constexpr uint32_t default_record_bytes = 1024;
constexpr uint32_t largest_cluster_bytes = 0x200000;
constexpr uint32_t records_ahead = 64;  // how many are read at once

constexpr uint32_t least_cluster_bytes = 512;  // of any real volume
constexpr uint64_t room_for_cut_disks = 0x10000;

/// The product of two numbers, 0 if it does not fit 64 bits.
uint64_t checked_product(uint64_t left, uint64_t right) {
  return right != 0 && left > ~uint64_t{0} / right ? 0 : left * right;
}

/// 0 if the boot sector states more than 2 to the power of 31.
uint32_t sectors_per_cluster(byte_view boot) {
  const uint32_t stored = boot.u8_at(sectors_per_cluster_at);
  if (stored <= 128) return stored;
  return 256 - stored < 32 ? 1U << (256 - stored) : 0;
}

/// The bytes of record 0, which may be more or fewer than any record has.
uint32_t record_bytes(byte_view boot, uint32_t bytes_per_cluster) {
  const auto stored = static_cast<int8_t>(boot.u8_at(record_clusters_at));
  if (stored == 0) return default_record_bytes;
  if (stored < 0) return stored > -32 ? 1U << -stored : 0U;
  return bytes_per_cluster * static_cast<uint8_t>(stored);  // at most 127 of 2 MiB
}

}  // namespace

bool mft_reader::read_boot_sector() {
  std::vector<uint8_t> sector(boot_sector::bytes);
  if (!read_at(0, sector.data(), sector.size())) return false;
  const byte_view boot(sector);
  if (!boot_sector::is_ntfs(boot)) return false;
  m_bytes_per_sector = boot.u16_at(boot_sector::bytes_per_sector_at);
  const uint64_t cluster_bytes = uint64_t{m_bytes_per_sector} * sectors_per_cluster(boot);
  if (cluster_bytes == 0 || cluster_bytes > largest_cluster_bytes) return false;
  m_bytes_per_cluster = static_cast<uint32_t>(cluster_bytes);
  m_first_record_bytes = record_bytes(boot, m_bytes_per_cluster);
  m_stated_record_bytes = m_first_record_bytes;
  m_mft_offset = checked_product(boot.u64_at(mft_lcn_at), cluster_bytes);
  m_mirror_offset = checked_product(boot.u64_at(mirror_lcn_at), cluster_bytes);
  return is_record_size(m_first_record_bytes) && m_mft_offset != 0;
}

bool mft_reader::turn_to_mirror() {
  if (m_mirror_offset == 0 || m_mirror_offset == m_mft_offset) return false;
  m_mft_offset = m_mirror_offset;
  m_first_record_bytes = m_stated_record_bytes;
  m_mft_pieces = {};
  m_mft_map.clear();
  return true;
}

void mft_reader::set_record_bytes(uint32_t bytes) {
  constexpr uint64_t steps_per_record = 4;
  m_record_bytes = bytes;
  m_references_left = steps_per_record * (m_disk->stored_size() / bytes);
  m_list_bytes_left = 2 * m_disk->stored_size() + room_for_cut_disks;
}

size_t mft_reader::most_extents() const {
  // A hole may stand between any two clusters.
  const uint64_t clusters = stored_size() / std::max(m_bytes_per_cluster, least_cluster_bytes);
  return static_cast<size_t>(2 * clusters + room_for_cut_disks);
}

size_t mft_reader::most_children() const {
  return static_cast<size_t>(stored_size() / m_record_bytes + room_for_cut_disks);
}

bool mft_reader::read_mft_record(uint64_t entry, ntfs_record_bytes& record) {
  if (!read_raw_record(entry, record)) {
    record.clear();
    return false;
  }
  return apply_fixups(record, m_bytes_per_sector);
}

bool mft_reader::read_raw_record(uint64_t entry, ntfs_record_bytes& record) {
  if (entry == 0) {
    record.resize(m_first_record_bytes);
    return read_at(m_mft_offset, record.data(), record.size());
  }
  const uint64_t mft_offset = checked_product(entry, m_record_bytes);
  if (mft_offset == 0) return false;
  record.resize(m_record_bytes);
  const bool held = m_ahead.holds(entry, m_record_bytes);
  // Records that are asked for one after another come in one read; if that fails, each by itself,
  // so that a damaged place costs no more than the records in it.
  const bool near = entry > m_ahead.last_asked && entry - m_ahead.last_asked <= records_ahead / 4 &&
                    entry >= m_ahead.failed_until;
  m_ahead.last_asked = entry;
  if (!held && near) {
    m_ahead.first_entry = entry;
    m_ahead.bytes.resize(size_t{records_ahead} * m_record_bytes);
    if (!read_mft_bytes(mft_offset, m_ahead.bytes.data(), m_ahead.bytes.size())) {
      m_ahead.bytes.clear();
      m_ahead.failed_until = entry + records_ahead;
    }
  }
  if (held || (near && !m_ahead.bytes.empty())) {
    const uint64_t at = (entry - m_ahead.first_entry) * m_record_bytes;
    const byte_view found = byte_view(m_ahead.bytes).clip(at, m_record_bytes);
    std::copy(found.begin(), found.end(), record.begin());
    return true;
  }
  return read_mft_bytes(mft_offset, record.data(), record.size());
}

void mft_reader::add_mft_piece(byte_view runs, uint64_t first_vcn) {
  const size_t known = m_mft_pieces.size();
  decode_run_list(m_mft_pieces, runs, first_vcn, most_extents());
  for (size_t i = known; i < m_mft_pieces.size(); ++i) {
    m_mft_map.try_emplace(m_mft_pieces[i].vcn, m_mft_pieces[i]);
  }
}

bool mft_reader::place_mft(uint64_t clusters) {
  place_pieces(m_mft_pieces, clusters);
  m_mft_map.clear();
  for (const cluster_extent& extent : m_mft_pieces) m_mft_map.emplace(extent.vcn, extent);
  m_mft_pieces = {};
  return !m_mft_map.empty();
}

bool mft_reader::read_mft_bytes(uint64_t mft_offset, uint8_t* buffer, uint64_t size) {
  while (size != 0) {
    const uint64_t vcn = mft_offset / m_bytes_per_cluster;
    const auto behind = m_mft_map.upper_bound(vcn);
    if (behind == m_mft_map.begin()) return false;
    const cluster_extent& extent = std::prev(behind)->second;
    if (extent.sparse || vcn - extent.vcn >= extent.clusters) return false;
    // LCNs and lengths are below 2 to the power of 36, so that no product of theirs wraps.
    const uint64_t head = mft_offset - extent.vcn * m_bytes_per_cluster;
    const uint64_t piece = std::min(size, extent.clusters * m_bytes_per_cluster - head);
    if (!read_at(extent.lcn * m_bytes_per_cluster + head, buffer, piece)) return false;
    mft_offset += piece;
    buffer += piece;
    size -= piece;
  }
  return true;
}

bool mft_reader::follow_reference() {
  if (m_references_left == 0) return false;
  --m_references_left;
  return true;
}

bool mft_reader::take_list_bytes(uint64_t bytes) {
  if (bytes > m_list_bytes_left) return false;
  m_list_bytes_left -= bytes;
  return true;
}

uint64_t mft_reader::read_clusters(uint64_t lcn, uint8_t* buffer, uint64_t size) {
  const uint64_t place = checked_product(lcn, m_bytes_per_cluster);
  if (place == 0 && lcn != 0) return 0;
  size -= size % m_bytes_per_cluster;
  if (size != 0 && read_at(place, buffer, size)) return size;
  // Cluster by cluster up to the damaged one.
  const uint64_t step = std::max(m_bytes_per_cluster,
                                 least_cluster_bytes / m_bytes_per_cluster * m_bytes_per_cluster);
  uint64_t done = 0;
  while (done < size && read_at(place + done, buffer + done, std::min(step, size - done))) {
    done += std::min(step, size - done);
  }
  return done;
}

uint64_t mft_reader::read_bytes(uint64_t offset, uint8_t* buffer, uint64_t size) {
  constexpr uint64_t sector_bytes = 512;
  if (read_at(offset, buffer, size)) return size;
  if (offset > ~m_volume_offset) return 0;
  const uint64_t start = m_volume_offset + offset;
  for (uint64_t done = 0; done < size;) {
    const uint64_t place = start + done;
    const uint64_t wanted = std::min(sector_bytes - place % sector_bytes, size - done);
    auto came = static_cast<uint32_t>(wanted);
    if (!m_disk->read(buffer + done, came, place)) return done;
    done += came;
    if (came != wanted) return done;
  }
  return size;
}

bool mft_reader::read_at(uint64_t offset, uint8_t* buffer, uint64_t size) {
  constexpr uint64_t largest_read = 0x40000000;
  if (offset > ~m_volume_offset) return false;
  const uint64_t start = m_volume_offset + offset;
  for (uint64_t done = 0; done < size;) {
    auto piece = static_cast<uint32_t>(std::min(size - done, largest_read));
    const uint32_t wanted = piece;
    if (start > ~done || !m_disk->read(buffer + done, piece, start + done) || piece != wanted) {
      return false;
    }
    done += piece;
  }
  return true;
}

}  // namespace ovrik
