// What volumes that claim much cost: counted in reads and bytes, at two sizes.
#include <gtest/gtest.h>

#include "support/hive_volume.h"

namespace test_support {
namespace {

struct cost {
  uint64_t reads = 0, bytes = 0;
};

class counted_disk : public memory_disk {
 public:
  counted_disk(const bytes& content, cost& spent) : memory_disk(content), m_spent(spent) {}

  bool read(void* buffer, uint32_t& size, uint64_t offset) override {
    const bool read = memory_disk::read(buffer, size, offset);
    ++m_spent.reads;
    if (read) m_spent.bytes += size;
    return read;
  }

 private:
  cost& m_spent;
};

cost cost_of(const ntfs_builder& built, bool found = false) {
  cost spent;
  const auto volume =
      std::make_shared<ovrik::ntfs_volume>(std::make_unique<counted_disk>(built.volume, spent), 0);
  EXPECT_TRUE(volume->mount());
  ovrik::diagnostics_log log;
  uint64_t inode = 0;
  EXPECT_EQ(lookup_path(*volume, "\\windows\\system32\\config\\system", inode, log), found);
  if (const auto data = open_file_data(volume, inode, log)) {
    uni::memory_block file;
    read_whole_data(*data, file);
  }
  return spent;
}

bytes two_byte_run(size_t clusters, size_t lcn) {
  return {0x22, static_cast<uint8_t>(clusters), static_cast<uint8_t>(clusters >> 8),
          static_cast<uint8_t>(lcn), static_cast<uint8_t>(lcn >> 8)};
}

/// A volume half of which is the MFT. All its records are children of the root and are made of
/// `attributes`; a list at `list_cluster` names record after record with an attribute of `type`.
ntfs_builder crowded(size_t clusters, uint32_t type, const std::vector<bytes>& attributes,
                     bool list_of_mft) {
  ntfs_builder built(clusters);
  const size_t records = clusters / 2, list_cluster = clusters - 80, blocks_cluster = records + 8;
  bytes list;
  while (list.size() < 0x10000) {
    append(list, list_entry(type, 16 + list.size() / 32 % (records - 16), 1, 1));
  }
  built.cluster(list_cluster, list);
  const bytes list_piece =
      non_resident_attribute(0x20, two_byte_run(64, list_cluster), {.size = list.size()});
  const bytes mft = non_resident_attribute(0x80, two_byte_run(records, ntfs_builder::mft_cluster),
                                           {.size = records * 1024});
  built.record(0, list_of_mft ? std::vector<bytes>{list_piece, mft} : std::vector<bytes>{mft});
  std::vector<bytes> all = attributes;
  if (!list_of_mft) all.insert(all.begin(), list_piece);
  std::vector<uint64_t> children;
  size_t block = 0;
  for (uint64_t entry = 16; entry < records; ++entry) {
    built.record(entry, all);
    children.push_back(entry);
    if (children.size() < 40 && entry + 1 < records) continue;
    built.cluster(blocks_cluster + 4 * block++, index_block(children));
    children.clear();
  }
  const bytes index = index_piece(two_byte_run(4 * block, blocks_cluster), 0, 1, 4096 * block);
  built.record(5, {index_attribute({}), index}, 1, 3);
  return built;
}

TEST(ntfs_cost, four_times_the_volume_costs_about_four_times_as_much) {
  const bytes other = name_attribute(u"other");
  bytes many_runs;
  for (int i = 0; i < 250; ++i) append(many_runs, {0x11, 1, 2});
  const auto piece = [&](uint32_t type) {
    return non_resident_attribute(type, many_runs, {.id = 1, .first_vcn = 9, .size = 1 << 20});
  };
  struct shape {
    const char* name;
    uint32_t type;
    std::vector<bytes> attributes;
    bool list_of_mft;
  };
  const shape shapes[] = {
      {"each record shares a list of 64 KiB", 0x30, {other}, false},
      {"the MFT is in pieces that many records hold", 0x80, {other, piece(0x80)}, true},
  };
  for (const shape& s : shapes) {
    const cost small = cost_of(crowded(1024, s.type, s.attributes, s.list_of_mft));
    const cost large = cost_of(crowded(4096, s.type, s.attributes, s.list_of_mft));
    EXPECT_LE(large.reads, 5 * small.reads) << s.name;
    EXPECT_LE(large.bytes, 5 * small.bytes) << s.name;
    EXPECT_LE(large.bytes, 16 * 4096 * 1024U) << s.name;
  }
}

TEST(ntfs_cost, a_folder_of_many_names_costs_its_index) {
  ntfs_builder built(1024);
  built.record(0, {non_resident_attribute(0x80, two_byte_run(512, 4), {.size = 512 * 1024})});
  built.record(13, {hive_name, data_attribute("the hive")});
  named_children children = {{13, u"SYSTEM"}};
  size_t block = 0;
  for (uint64_t entry = 16; entry < 512; ++entry) {
    built.record(entry, {name_attribute(u"other")});
    children.emplace_back(entry, u"other");
    if (children.size() < 40 && entry != 511) continue;
    built.cluster(600 + 4 * block++, named_index_block(children));
    children.clear();
  }
  const bytes index = index_piece(two_byte_run(4 * block, 600), 0, 1, 4096 * block);
  built.record(12, {directory_name, named_index_attribute({}), index}, 1, 3);
  const cost spent = cost_of(built, true);
  EXPECT_LE(spent.reads, 20U);
  EXPECT_LE(spent.bytes, 4096 * block + 3 * 64 * 1024);
}

}  // namespace
}  // namespace test_support
