#include "sources/ntfs/ntfs_directory.h"

#include <algorithm>

#include "base/utf16.h"
#include "sources/ntfs/ntfs_attributes.h"

namespace ovrik {

namespace {

// $INDEX_ROOT (INDEX_ROOT) and an index block (INDEX_ALLOCATION_BUFFER, "INDX") hold a node each.
constexpr size_t indexed_type_at = 0x00;     // u32 in the root: the type of the keys
constexpr size_t root_block_size_at = 0x08;  // u32, bytes
constexpr size_t root_node_at = 0x10;
constexpr size_t block_node_at = 0x18;
constexpr size_t index_block_bytes = 4096;

// Node header (INDEX_HEADER).
constexpr size_t first_entry_at = 0x00;  // u32, from the node header
constexpr size_t node_size_at = 0x04;    // u32, bytes
constexpr uint32_t largest_node = 4096;

// Index entry (INDEX_ENTRY); it begins with the reference to the record.
constexpr size_t entry_length_at = 0x08;  // u16
constexpr size_t key_length_at = 0x0A;    // u16
constexpr size_t entry_flags_at = 0x0C;   // u16
constexpr size_t entry_flags_end = entry_flags_at + 2;
constexpr uint16_t last_entry = 0x02;
constexpr uint16_t last_entry_with_children = 0x03;
constexpr uint32_t longest_entry = 768;

// $FILE_NAME (FILE_NAME); it begins with the reference to the directory.
constexpr size_t name_length_at = 0x40;  // u8, UTF-16 units
constexpr size_t name_flags_at = 0x41;   // u8
constexpr size_t name_at = 0x42;

/// True for a name that is for DOS alone, by the flags of a $FILE_NAME: the bit of Windows names
/// (1) is not set, but another one is.
bool is_dos_name(uint32_t flags) { return flags != 0 && flags % 2 == 0; }

constexpr std::string_view file_name_index = "$I30";

/// Adds the entries of an index node, whose header is at the start of `node`.
void parse_node(byte_view node, std::set<uint64_t>& children) {
  const uint32_t total = node.u32_at(node_size_at);
  if (total == 0 || total > largest_node) return;
  const byte_view entries = node.clip(0, total);
  for (uint64_t at = entries.u32_at(first_entry_at); entries.has(at, entry_flags_end);) {
    const uint32_t length = entries.u16_at(at + entry_length_at);
    const uint32_t key_length = entries.u16_at(at + key_length_at);
    const uint64_t reference = entries.u64_at(at);
    const uint32_t flags = entries.u16_at(at + entry_flags_at);
    if (length > total || key_length > length || reference == 0 || flags == last_entry ||
        flags == last_entry_with_children) {
      return;
    }
    children.insert(reference & entry_mask);
    if (length == 0 || length > longest_entry) return;
    at += length;
  }
}

/// Adds the entries of an $INDEX_ROOT, if it is one of file names.
void parse_root(const ntfs_attribute& root, std::set<uint64_t>& children) {
  const byte_view content = root.content();
  if (content.u32_at(indexed_type_at) != ntfs_type::file_name) return;
  if (content.u32_at(root_block_size_at) == 0) return;
  parse_node(content.from(root_node_at), children);
}

/// Cuts the clusters of an index allocation into blocks, which need not begin with an extent.
class block_reader {
 public:
  block_reader(ntfs_volume& volume, std::set<uint64_t>& children)
      : m_volume(volume), m_children(children) {}

  /// Reads the clusters of one extent; what cannot be read of it is left out.
  void read(const cluster_extent& extent) {
    constexpr uint64_t read_bytes = 0x40000;
    const uint32_t cluster_bytes = m_volume.bytes_per_cluster();
    // Behind a gap or a damaged place the extent may begin within a block.
    const auto lead =
        static_cast<size_t>(extent.vcn % index_block_bytes * cluster_bytes % index_block_bytes);
    if (m_block.size() != lead) m_block.assign(lead, 0);
    const uint64_t clusters_per_read = std::max<uint64_t>(read_bytes / cluster_bytes, 1);
    std::vector<uint8_t> bytes;
    for (uint64_t done = 0; done < extent.clusters; done += clusters_per_read) {
      const uint64_t clusters = std::min(extent.clusters - done, clusters_per_read);
      const uint64_t wanted = clusters * cluster_bytes;
      bytes.resize(static_cast<size_t>(wanted));
      const uint64_t read = m_volume.read_clusters(extent.lcn + done, bytes.data(), wanted);
      take(byte_view(bytes).clip(0, read));
      if (read != wanted) return;
    }
  }

 private:
  /// Fills blocks with the bytes, and takes the entries of each that is full.
  void take(byte_view bytes) {
    while (!bytes.empty()) {
      const byte_view piece = bytes.clip(0, index_block_bytes - m_block.size());
      m_block.insert(m_block.end(), piece.begin(), piece.end());
      bytes = bytes.from(piece.size());
      if (m_block.size() < index_block_bytes) continue;
      if (byte_view(m_block).text_at(0, "INDX") && m_volume.apply_block_fixups(m_block)) {
        parse_node(byte_view(m_block).from(block_node_at), m_children);
      }
      m_block.clear();
    }
  }

  ntfs_volume& m_volume;
  std::set<uint64_t>& m_children;
  std::vector<uint8_t> m_block;  ///< what has come of the block that is being filled
};

/// The clusters of all pieces of an index. They are gathered before any block is read, since a
/// block may begin in one piece and end in another.
struct index_clusters {
  cluster_extents extents;
  uint64_t allocated_size = 0;  ///< in bytes, as the first piece states it
};

/// Adds what one piece of the index holds.
void take_index_piece(const ntfs_attribute& attribute, std::set<uint64_t>& children,
                      index_clusters& clusters) {
  if (attribute.name() != file_name_index) return;
  if (attribute.type() == ntfs_type::index_root && !attribute.non_resident()) {
    parse_root(attribute, children);
  }
  if (attribute.type() == ntfs_type::index_allocation && attribute.non_resident()) {
    if (attribute.first_vcn() == 0 && attribute.initialized_size() == 0) return;
    if (attribute.first_vcn() == 0) clusters.allocated_size = attribute.allocated_size();
    decode_run_list(clusters.extents, attribute.runs(), attribute.first_vcn());
  }
}

/// Adds the names that the record itself holds.
void take_names(byte_view record, std::vector<ntfs_name>& names) {
  for (const ntfs_attribute& attribute : attributes_of(record)) {
    if (attribute.type() != ntfs_type::file_name) continue;
    const byte_view content = attribute.content();
    if (content.empty() || is_dos_name(content.u8_at(name_flags_at))) continue;
    names.push_back({content.u64_at(0) & entry_mask,
                     utf16_text(content.clip(name_at, 2U * content.u8_at(name_length_at)))});
  }
}

}  // namespace

bool list_dir_entries(ntfs_volume& volume, uint64_t inode, std::set<uint64_t>& children) {
  children.clear();
  ntfs_record_bytes record;
  if (!volume.read_mft_record(inode, record)) return false;
  // An extension record leads to the directory's own; one step, so that no two can lead to each
  // other.
  if (const uint64_t base = record_base_reference(byte_view(record)) & entry_mask; base != 0) {
    inode = base;
    if (!volume.read_mft_record(inode, record)) return false;
  }
  index_clusters clusters;
  for (const ntfs_attribute& attribute : attributes_of(byte_view(record))) {
    take_index_piece(attribute, children, clusters);
  }
  visit_foreign_attributes(volume, byte_view(record), inode, list_trust::any_record, nullptr,
                           [&](byte_view /*holder*/, const ntfs_attribute& attribute) {
                             take_index_piece(attribute, children, clusters);
                           });
  place_pieces(clusters.extents, clusters.allocated_size / volume.bytes_per_cluster());
  block_reader blocks(volume, children);
  // Runs may name the same clusters over and over: no more are read than the disk stores.
  uint64_t clusters_left = volume.stored_size() / volume.bytes_per_cluster();
  for (cluster_extent& extent : clusters.extents) {
    if (extent.sparse) continue;
    extent.clusters = std::min(extent.clusters, clusters_left);
    clusters_left -= extent.clusters;
    blocks.read(extent);
  }
  return true;
}

std::vector<ntfs_name> list_record_names(ntfs_volume& volume, uint64_t entry, byte_view record) {
  std::vector<ntfs_name> names;
  take_names(record, names);
  visit_foreign_attributes(volume, record, entry, list_trust::any_record, nullptr,
                           [&names](byte_view holder, const ntfs_attribute& attribute) {
                             if (attribute.type() == ntfs_type::file_name) {
                               take_names(holder, names);
                             }
                           });
  return names;
}

}  // namespace ovrik
