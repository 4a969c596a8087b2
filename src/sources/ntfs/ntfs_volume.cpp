#include "sources/ntfs/ntfs_volume.h"

#include "sources/ntfs/ntfs_attributes.h"

namespace ovrik {

bool ntfs_volume::mount() {
  ntfs_record_bytes record;
  if (!read_boot_sector()) return false;
  if (read_first_record(record) && find_mft(record)) return true;
  m_by_mirror = turn_to_mirror() && read_first_record(record) && find_mft(record);
  return m_by_mirror;
}

bool ntfs_volume::read_first_record(ntfs_record_bytes& record) {
  if (!read_mft_record(0, record)) return false;
  // The record knows its size better than the boot sector.
  const uint32_t protected_bytes = fixed_up_bytes(byte_view(record));
  if (protected_bytes > first_record_bytes()) {
    set_first_record_bytes(protected_bytes);
    if (!read_mft_record(0, record)) return false;
  }
  if (!is_file_record(byte_view(record))) return false;
  const uint32_t allocated_bytes = record_allocated_bytes(byte_view(record));
  if (!is_record_size(allocated_bytes)) return false;
  set_record_bytes(allocated_bytes);
  return true;
}

bool ntfs_volume::find_mft(const ntfs_record_bytes& record) {
  // The pieces in the record itself come first: they lead to the records that hold the others.
  uint64_t allocated_bytes = 0;
  const auto take_piece = [&](byte_view /*holder*/, const ntfs_attribute& attribute) {
    if (attribute.type() != ntfs_type::data || !attribute.non_resident()) return;
    if (attribute.first_vcn() == 0) allocated_bytes = attribute.allocated_size();
    add_mft_piece(attribute.runs(), attribute.first_vcn());
  };
  for (const ntfs_attribute& attribute : attributes_of(byte_view(record))) {
    take_piece(byte_view(record), attribute);
  }
  visit_foreign_attributes(*this, byte_view(record), 0,
                           {list_trust::same_sequence, {ntfs_type::data}}, nullptr, take_piece);
  return place_mft(allocated_bytes / bytes_per_cluster());
}

}  // namespace ovrik
