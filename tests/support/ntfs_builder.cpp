#include "support/ntfs_builder.h"

#include <algorithm>

namespace test_support {

namespace {

constexpr uint16_t torn_mark = 0x0007;  // stands at the sector ends in place of what belongs there

/// Moves the ends of all sectors of a block into its update sequence at `at`.
void protect(bytes& block, size_t at) {
  put_u16(block, 4, static_cast<uint16_t>(at));
  put_u16(block, 6, static_cast<uint16_t>(block.size() / 512 + 1));
  put_u16(block, at, torn_mark);
  for (size_t sector = 1; sector <= block.size() / 512; ++sector) {
    put_u16(block, at + 2 * sector, get_u16(block, 512 * sector - 2));
    put_u16(block, 512 * sector - 2, torn_mark);
  }
}

bytes attribute(uint32_t type, const attribute_form& form, size_t header_bytes, const bytes& body) {
  bytes block(header_bytes);
  append_utf16(block, form.name);
  block.resize((block.size() + 7) / 8 * 8);
  const size_t body_at = block.size();
  append(block, body);
  block.resize((block.size() + 7) / 8 * 8);
  put_u32(block, 0, type);
  put_u32(block, 4, static_cast<uint32_t>(block.size()));
  block[9] = static_cast<uint8_t>(form.name.size());
  put_u16(block, 10, static_cast<uint16_t>(header_bytes));
  put_u16(block, 12, form.flags);
  put_u16(block, 14, form.id);
  put_u16(block, header_bytes == 24 ? 20 : 32, static_cast<uint16_t>(body_at));
  return block;
}

/// An $INDEX_ROOT in front of its node: file names, blocks of 4,096 bytes.
const bytes root_head = {0x30, 0, 0, 0, 0, 0, 0, 0, 0, 0x10, 0, 0, 0, 0, 0, 0};

/// A node header and the entries behind it.
bytes index_node(const named_children& children) {
  bytes node(16);
  for (const auto& [child, name] : children) {
    const bytes key = name.empty() ? bytes(80) : file_name(0, name);
    bytes entry(16);
    put_u64(entry, 0, child | uint64_t{1} << 48);
    append(entry, key);
    entry.resize((entry.size() + 7) / 8 * 8);
    put_u16(entry, 8, static_cast<uint16_t>(entry.size()));
    put_u16(entry, 10, static_cast<uint16_t>(key.size()));
    append(node, entry);
  }
  append(node, {0, 0, 0, 0, 0, 0, 0, 0, 16, 0, 0, 0, 2, 0, 0, 0});  // the last one
  put_u32(node, 0, 16);
  for (const size_t at : {4U, 8U}) put_u32(node, at, static_cast<uint32_t>(node.size()));
  return node;
}

named_children without_names(const std::vector<uint64_t>& children) {
  named_children named;
  for (const uint64_t child : children) named.emplace_back(child, u"");
  return named;
}

}  // namespace

bytes resident_attribute(uint32_t type, const bytes& content, const attribute_form& form) {
  bytes block = attribute(type, form, 24, content);
  put_u32(block, 16, static_cast<uint32_t>(content.size()));
  return block;
}

bytes non_resident_attribute(uint32_t type, const bytes& runs, const attribute_form& form) {
  bytes block = attribute(type, form, 72, concat({runs, {0}}));
  block[8] = 1;
  put_u64(block, 16, form.first_vcn);
  put_u16(block, 34, form.compression_unit);
  for (const size_t at : {40U, 48U, 56U, 64U}) put_u64(block, at, form.size);
  return block;
}

bytes file_name(uint64_t parent, std::u16string_view name, uint8_t name_space) {
  bytes content(66);
  put_u64(content, 0, parent | uint64_t{1} << 48);
  content[64] = static_cast<uint8_t>(name.size());
  content[65] = name_space;
  append_utf16(content, name);
  return content;
}

bytes index_root(const std::vector<uint64_t>& children) {
  return concat({root_head, index_node(without_names(children))});
}

bytes named_index_attribute(const named_children& children) {
  return resident_attribute(0x90, concat({root_head, index_node(children)}), {.name = u"$I30"});
}

bytes index_attribute(const std::vector<uint64_t>& children) {
  return named_index_attribute(without_names(children));
}

bytes named_index_block(const named_children& children) {
  bytes block(4096);
  put(block, 0, as_bytes("INDX"));
  bytes node = index_node(children);
  put_u32(node, 0, 40);  // the update sequence stands between header and entries
  node.insert(node.begin() + 16, 24, 0);
  put_u32(node, 4, static_cast<uint32_t>(node.size()));
  put(block, 24, node);
  protect(block, 40);
  return block;
}

bytes index_block(const std::vector<uint64_t>& children) {
  return named_index_block(without_names(children));
}

bytes list_entry(uint32_t type, uint64_t entry, uint16_t sequence, uint16_t id) {
  bytes block(32);
  put_u32(block, 0, type);
  put_u16(block, 4, 32);
  put_u64(block, 16, entry | uint64_t{sequence} << 48);
  put_u16(block, 24, id);
  return block;
}

ntfs_builder::ntfs_builder(size_t clusters) : volume(clusters * cluster_bytes) {
  put(volume, 0, {0xEB, 0x52, 0x90});
  put(volume, 3, as_bytes("NTFS    "));
  put_u16(volume, 11, 512);
  volume[13] = 2;
  put_u64(volume, 40, clusters * 2);
  put_u64(volume, 48, mft_cluster);
  volume[64] = 0xF6;  // 2 to the power of 10 bytes
  put_u16(volume, 510, 0xAA55);
  record(0, {non_resident_attribute(0x80, {0x11, record_count, mft_cluster},
                                    {.size = record_count * cluster_bytes})});
  const std::u16string names[] = {u"Windows", u"SYSTEM32", u"config"};
  record(5, {index_attribute({5, 10})}, 1, 3);
  for (uint64_t i = 0; i < 3; ++i) {
    const bytes name = file_name(i == 0 ? 5 : 9 + i, names[i]);
    record(10 + i, {resident_attribute(0x30, name), index_attribute({11 + i})}, 1, 3);
  }
}

void ntfs_builder::record(uint64_t entry, const std::vector<bytes>& attributes, uint16_t sequence,
                          uint16_t flags, uint64_t base) {
  bytes block = concat({bytes(56), concat(attributes)});
  append_u32(block, 0xFFFFFFFF);
  put(block, 0, as_bytes("FILE"));
  put_u16(block, 16, sequence);
  put_u16(block, 20, 56);
  put_u16(block, 22, flags);
  put_u32(block, 24, static_cast<uint32_t>(block.size()));
  put_u32(block, 28, cluster_bytes);
  put_u64(block, 32, base);
  put_u32(block, 44, static_cast<uint32_t>(entry));
  block.resize(std::max(block.size(), cluster_bytes));
  protect(block, 48);
  put(volume, record_at(entry), block);
}

void ntfs_builder::cluster(uint64_t lcn, const bytes& content) {
  put(volume, lcn * cluster_bytes, content);
}

}  // namespace test_support
