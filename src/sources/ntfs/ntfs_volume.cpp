#include "sources/ntfs/ntfs_volume.h"

#include <algorithm>

#include "sources/ntfs/ntfs_attributes.h"

namespace ovrik {

namespace {

// The boot sector.
constexpr uint32_t boot_sector_bytes = 512;
constexpr size_t oem_id_at = 3;
constexpr size_t bytes_per_sector_at = 11;  // u16
constexpr size_t sectors_per_cluster_at =
    13;                                    // u8; above 128: 2 to the power of 256 less the value
constexpr size_t mft_lcn_at = 48;          // u64
constexpr size_t record_clusters_at = 64;  // i8; negative: 2 to the power of its magnitude bytes

constexpr size_t allocated_record_bytes_at = 28;  // u32 of a file record header
constexpr size_t update_sequence_count_at = 6;

constexpr uint32_t default_record_bytes = 1024;
constexpr uint32_t largest_record_bytes = 0x4000;
constexpr uint32_t largest_cluster_bytes = 0x200000;
constexpr uint32_t records_ahead = 64;

/// The product of two numbers, 0 if it does not fit 64 bits.
uint64_t checked_product(uint64_t left, uint64_t right) {
  return right != 0 && left > ~uint64_t{0} / right ? 0 : left * right;
}

uint32_t sectors_per_cluster(byte_view boot) {
  const uint32_t stored = boot.u8_at(sectors_per_cluster_at);
  if (stored <= 128) return stored;
  return 256 - stored < 32 ? 1U << (256 - stored) : 0;
}

uint32_t record_bytes(byte_view boot, uint32_t bytes_per_cluster) {
  const auto stored = static_cast<int8_t>(boot.u8_at(record_clusters_at));
  if (stored == 0) return default_record_bytes;
  if (stored < 0) return stored > -32 ? 1U << -stored : 0U;
  const uint64_t bytes = uint64_t{bytes_per_cluster} * static_cast<uint8_t>(stored);
  return bytes <= largest_record_bytes ? static_cast<uint32_t>(bytes) : 0;
}

bool is_record_size(uint32_t bytes) {
  return bytes >= boot_sector_bytes && bytes <= largest_record_bytes;
}

}  // namespace

bool ntfs_volume::mount() { return read_boot_sector() && read_first_record(); }

bool ntfs_volume::read_boot_sector() {
  std::vector<uint8_t> sector(boot_sector_bytes);
  if (!read_at(0, sector.data(), sector.size())) return false;
  const byte_view boot(sector);
  if (!boot.text_at(oem_id_at, "NTFS    ")) return false;
  m_bytes_per_sector = boot.u16_at(bytes_per_sector_at);
  const uint64_t cluster = uint64_t{m_bytes_per_sector} * sectors_per_cluster(boot);
  if (cluster == 0 || cluster > largest_cluster_bytes) return false;
  m_bytes_per_cluster = static_cast<uint32_t>(cluster);
  m_record_bytes = record_bytes(boot, m_bytes_per_cluster);
  m_mft_offset = checked_product(boot.u64_at(mft_lcn_at), cluster);
  return is_record_size(m_record_bytes) && m_mft_offset != 0;
}

bool ntfs_volume::read_first_record() {
  ntfs_record_bytes record;
  if (!read_mft_record(0, record)) return false;
  // The record knows its size better than the boot sector.
  const uint32_t sectors = byte_view(record).u16_at(update_sequence_count_at);
  if (sectors > 1 && (sectors - 1) * 512 > m_record_bytes) {
    m_record_bytes = (sectors - 1) * 512;
    if (!read_mft_record(0, record)) return false;
  }
  if (!is_file_record(byte_view(record))) return false;
  m_record_size = byte_view(record).u32_at(allocated_record_bytes_at);
  if (!is_record_size(m_record_size)) return false;

  m_references_left = 4 * (m_disk->stored_size() / m_record_size);

  // The pieces in the record itself come first: they lead to the records that hold the others.
  uint64_t allocated = 0;
  const auto take_piece = [&](byte_view /*holder*/, const ntfs_attribute& attribute) {
    if (attribute.type() != ntfs_type::data || !attribute.non_resident()) return;
    if (attribute.first_vcn() == 0) allocated = attribute.allocated_size();
    decode_run_list(m_mft_extents, attribute.runs(), attribute.first_vcn());
  };
  for (const ntfs_attribute& attribute : attributes_of(byte_view(record))) {
    take_piece(byte_view(record), attribute);
  }
  visit_foreign_attributes(*this, byte_view(record), 0, list_trust::same_sequence, nullptr,
                           take_piece);
  place_pieces(m_mft_extents, allocated / m_bytes_per_cluster);
  return !m_mft_extents.empty();
}

bool ntfs_volume::read_mft_record(uint64_t entry, ntfs_record_bytes& record) {
  if (!read_raw_record(entry, record)) {
    record.clear();
    return false;
  }
  return apply_fixups(record, m_bytes_per_sector);
}

bool ntfs_volume::read_raw_record(uint64_t entry, ntfs_record_bytes& record) {
  if (entry == 0) {
    record.resize(m_record_bytes);
    return read_at(m_mft_offset, record.data(), record.size());
  }
  const uint64_t position = checked_product(entry, m_record_size);
  if (position == 0) return false;
  record.resize(m_record_size);
  const auto ahead_index = [this, entry] { return (entry - m_ahead.first_entry) * m_record_size; };
  const bool held = entry >= m_ahead.first_entry && ahead_index() < m_ahead.bytes.size();
  // Records that are asked for one after another come in one read; if that fails, each by itself,
  // so that a damaged place costs no more than the records in it.
  const bool near = entry > m_ahead.last_asked && entry - m_ahead.last_asked <= records_ahead / 4;
  m_ahead.last_asked = entry;
  if (!held && near) {
    m_ahead.first_entry = entry;
    m_ahead.bytes.resize(size_t{records_ahead} * m_record_size);
    if (!read_mft_bytes(position, m_ahead.bytes.data(), m_ahead.bytes.size())) {
      m_ahead.bytes.clear();
    }
  }
  if (held || (near && !m_ahead.bytes.empty())) {
    const auto from = m_ahead.bytes.begin() + static_cast<std::ptrdiff_t>(ahead_index());
    std::copy_n(from, m_record_size, record.begin());
    return true;
  }
  return read_mft_bytes(position, record.data(), record.size());
}

bool ntfs_volume::read_mft_bytes(uint64_t position, uint8_t* buffer, uint64_t size) {
  for (const cluster_extent& extent : m_mft_extents) {
    const uint64_t begin = checked_product(extent.vcn, m_bytes_per_cluster);
    const uint64_t length = checked_product(extent.count, m_bytes_per_cluster);
    if (begin == 0 && extent.vcn != 0) return false;
    if (position < begin || position - begin >= length) continue;
    const uint64_t head = position - begin;
    const uint64_t piece = std::min(size, length - head);
    const uint64_t place = checked_product(extent.lcn, m_bytes_per_cluster);
    if (extent.sparse || place > ~head || !read_at(place + head, buffer, piece)) return false;
    if (piece == size) return true;
    position += piece;
    buffer += piece;
    size -= piece;
  }
  return false;
}

bool ntfs_volume::follow_reference() {
  if (m_references_left == 0) return false;
  --m_references_left;
  return true;
}

uint64_t ntfs_volume::read_clusters(uint64_t lcn, uint8_t* buffer, uint64_t size) {
  const uint64_t place = checked_product(lcn, m_bytes_per_cluster);
  if (place == 0 && lcn != 0) return 0;
  size -= size % m_bytes_per_cluster;
  if (size != 0 && read_at(place, buffer, size)) return size;
  uint64_t done = 0;  // cluster by cluster up to the damaged one
  while (done < size && read_at(place + done, buffer + done, m_bytes_per_cluster)) {
    done += m_bytes_per_cluster;
  }
  return done;
}

bool ntfs_volume::read_at(uint64_t offset, uint8_t* buffer, uint64_t size) {
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
