#include "sources/ntfs/ntfs_attributes.h"

#include <algorithm>

namespace ovrik {

namespace {

/// The bytes of a record's attribute list, at most as many as the system lets it grow to. What
/// cannot be read of it is zeros.
std::vector<uint8_t> list_bytes(mft_reader& volume, const ntfs_attribute& list) {
  constexpr uint64_t largest_list = 0x40000;  // bytes
  if (!list.non_resident()) return list.content().copy();
  cluster_extents extents;
  decode_run_list(extents, list.runs(), list.first_vcn(), volume.most_extents());
  const uint64_t size = std::min(list.real_size(), largest_list);
  std::vector<uint8_t> bytes;
  for (const cluster_extent& extent : extents) {
    if (bytes.size() >= size) break;
    const uint64_t clusters = (size - bytes.size()) / volume.bytes_per_cluster() + 1;
    const uint64_t wanted = std::min(clusters, extent.clusters) * volume.bytes_per_cluster();
    if (!volume.take_list_bytes(wanted)) break;
    const size_t begin = bytes.size();
    bytes.resize(begin + static_cast<size_t>(wanted));
    if (!extent.sparse) volume.read_clusters(extent.lcn, bytes.data() + begin, wanted);
  }
  bytes.resize(static_cast<size_t>(std::min<uint64_t>(bytes.size(), size)));
  return bytes;
}

}  // namespace

void visit_foreign_attributes(mft_reader& volume, byte_view record, uint64_t entry,
                              const list_request& wanted, diagnostics_log* log,
                              const attribute_visitor& visit) {
  std::vector<uint8_t> list;
  for (const ntfs_attribute& attribute : attributes_of(record)) {
    if (attribute.type() == ntfs_type::attribute_list) list = list_bytes(volume, attribute);
  }
  ntfs_record_bytes bytes;
  for (const attribute_list_entry& listed : attribute_list_entries(byte_view(list))) {
    if (listed.entry == entry) continue;
    if (log != nullptr) {
      diag_printf(*log, "->primary entry %llu pointing to ref entry %llu",
                  static_cast<unsigned long long>(entry),
                  static_cast<unsigned long long>(listed.entry));
    }
    if (std::count(wanted.types.begin(), wanted.types.end(), listed.type) == 0) continue;
    if (!volume.follow_reference()) return;
    if (!volume.read_mft_record(listed.entry, bytes)) continue;
    const byte_view holder(bytes);
    const bool trusted =
        wanted.trust == list_trust::any_record || record_sequence(holder) == listed.sequence;
    if (!has_file_mark(holder) || !trusted) continue;
    for (const ntfs_attribute& attribute : attributes_of(holder)) {
      if (attribute.type() != listed.type || attribute.id() != listed.id) continue;
      visit(holder, attribute);
      break;
    }
  }
}

}  // namespace ovrik
