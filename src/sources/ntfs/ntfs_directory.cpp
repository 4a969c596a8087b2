#include "sources/ntfs/ntfs_directory.h"

#include <algorithm>

#include "base/text.h"
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
constexpr size_t key_at = 0x10;  // the $FILE_NAME
constexpr uint32_t least_entry_bytes = 0x10;
constexpr uint16_t last_entry = 0x02;
constexpr uint16_t last_entry_with_children = 0x03;
constexpr uint32_t longest_entry = 768;

// $FILE_NAME (FILE_NAME); it begins with the reference to the directory.
constexpr size_t name_length_at = 0x40;  // u8, UTF-16 units
constexpr size_t name_flags_at = 0x41;   // u8
constexpr size_t name_at = 0x42;

/// The name in a $FILE_NAME.
std::string name_in(byte_view file_name) {
  return utf16_text(file_name.clip(name_at, 2U * file_name.u8_at(name_length_at)));
}

/// True for a name that is for DOS alone, by the flags of a $FILE_NAME: the bit of Windows names
/// (1) is not set, but another one is.
bool is_dos_name(uint32_t flags) { return flags != 0 && flags % 2 == 0; }

constexpr std::string_view file_name_index = "$I30";

/// Gathers what the nodes of an index list.
class index_parser {
 public:
  index_parser(const std::string& wanted, size_t most_children, directory_index& index)
      : m_wanted(wanted), m_most_children(most_children), m_index(index) {}

  /// Adds the entries of a node, whose header is at the start of `node`.
  void parse_node(byte_view node) {
    const uint32_t total = node.u32_at(node_size_at);
    if (total == 0 || total > largest_node) return;
    const byte_view entries = node.clip(0, total);
    // Lengths that make no sense do not let entries overlap without end.
    uint32_t entries_left = total / least_entry_bytes;
    for (uint64_t at = entries.u32_at(first_entry_at);
         entries.has(at, entry_flags_end) && entries_left != 0; --entries_left) {
      const uint32_t length = entries.u16_at(at + entry_length_at);
      const uint32_t key_length = entries.u16_at(at + key_length_at);
      const uint64_t reference = entries.u64_at(at);
      const uint32_t flags = entries.u16_at(at + entry_flags_at);
      if (length > total || key_length > length || reference == 0 || flags == last_entry ||
          flags == last_entry_with_children) {
        return;
      }
      add(reference & entry_mask, entries.clip(at + key_at, key_length));
      if (length == 0 || length > longest_entry) return;
      at += length;
    }
  }

  /// Adds the entries of an $INDEX_ROOT, if it is one of file names.
  void parse_root(const ntfs_attribute& root) {
    const byte_view content = root.content();
    if (content.u32_at(indexed_type_at) != ntfs_type::file_name) return;
    if (content.u32_at(root_block_size_at) == 0) return;
    parse_node(content.from(root_node_at));
  }

 private:
  void add(uint64_t child, byte_view key) {
    if (m_index.children.size() >= m_most_children) return;
    m_index.children.insert(child);
    // A character has one byte of UTF-8 at least and three for each unit at most.
    const size_t units = key.u8_at(name_length_at);
    if (units > m_wanted.size() || 3 * units < m_wanted.size()) return;
    if (lower_ascii(name_in(key)) == m_wanted) m_index.named.insert(child);
  }

  const std::string& m_wanted;
  size_t m_most_children;
  directory_index& m_index;
};

/// Cuts the clusters of an index allocation into blocks, which need not begin with an extent.
class block_reader {
 public:
  block_reader(ntfs_volume& volume, index_parser& parser) : m_volume(volume), m_parser(parser) {}

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
        m_parser.parse_node(byte_view(m_block).from(block_node_at));
      }
      m_block.clear();
    }
  }

  ntfs_volume& m_volume;
  index_parser& m_parser;
  std::vector<uint8_t> m_block;  ///< what has come of the block that is being filled
};

/// The clusters of all pieces of an index. They are gathered before any block is read, since a
/// block may begin in one piece and end in another.
struct index_clusters {
  cluster_extents extents;
  uint64_t allocated_size = 0;  ///< in bytes, as the first piece states it
};

/// Adds what one piece of the index holds.
void take_index_piece(const ntfs_attribute& attribute, size_t most_extents, index_parser& parser,
                      index_clusters& clusters) {
  if (attribute.name() != file_name_index) return;
  if (attribute.type() == ntfs_type::index_root && !attribute.non_resident()) {
    parser.parse_root(attribute);
  }
  if (attribute.type() == ntfs_type::index_allocation && attribute.non_resident()) {
    if (attribute.first_vcn() == 0 && attribute.initialized_size() == 0) return;
    if (attribute.first_vcn() == 0) clusters.allocated_size = attribute.allocated_size();
    decode_run_list(clusters.extents, attribute.runs(), attribute.first_vcn(), most_extents);
  }
}

/// Visits the names that the record itself holds.
void visit_names_in(byte_view record, const name_visitor& visit) {
  for (const ntfs_attribute& attribute : attributes_of(record)) {
    if (attribute.type() != ntfs_type::file_name) continue;
    const byte_view content = attribute.content();
    if (content.empty() || is_dos_name(content.u8_at(name_flags_at))) continue;
    visit({content.u64_at(0) & entry_mask, name_in(content)});
  }
}

}  // namespace

bool list_dir_entries(ntfs_volume& volume, uint64_t inode, const std::string& wanted,
                      directory_index& index) {
  index = {};
  ntfs_record_bytes record;
  if (!volume.read_mft_record(inode, record)) return false;
  // An extension record leads to the directory's own; one step, so that no two can lead to each
  // other.
  if (const uint64_t base = record_base_reference(byte_view(record)) & entry_mask; base != 0) {
    inode = base;
    if (!volume.read_mft_record(inode, record)) return false;
  }
  index_parser parser(wanted, volume.most_children(), index);
  index_clusters clusters;
  const auto take_piece = [&](byte_view /*holder*/, const ntfs_attribute& attribute) {
    take_index_piece(attribute, volume.most_extents(), parser, clusters);
  };
  for (const ntfs_attribute& attribute : attributes_of(byte_view(record))) {
    take_piece(byte_view(record), attribute);
  }
  visit_foreign_attributes(
      volume, byte_view(record), inode,
      {list_trust::any_record, {ntfs_type::index_root, ntfs_type::index_allocation}}, nullptr,
      take_piece);
  place_pieces(clusters.extents, clusters.allocated_size / volume.bytes_per_cluster());
  block_reader blocks(volume, parser);
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

void visit_record_names(ntfs_volume& volume, uint64_t entry, byte_view record,
                        const name_visitor& visit) {
  visit_names_in(record, visit);
  visit_foreign_attributes(volume, record, entry, {list_trust::any_record, {ntfs_type::file_name}},
                           nullptr,
                           [&visit](byte_view holder, const ntfs_attribute& /*attribute*/) {
                             visit_names_in(holder, visit);
                           });
}

}  // namespace ovrik
