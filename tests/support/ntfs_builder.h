// Composes small NTFS volumes byte by byte: sectors of 512 bytes, clusters and records of 1 KiB.
// What mkntfs and Windows would never write can be composed as well.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/bytes.h"

namespace test_support {

/// What an attribute has besides its type and content.
struct attribute_form {
  uint16_t id = 0;
  std::u16string name = {};
  uint16_t flags = 0;
  uint64_t first_vcn = 0;
  uint64_t size = 0;  ///< of a non-resident one: real, initialized, allocated and compressed
  uint8_t compression_unit = 0;
};

bytes resident_attribute(uint32_t type, const bytes& content, const attribute_form& form = {});
bytes non_resident_attribute(uint32_t type, const bytes& runs, const attribute_form& form);

/// Contents of $FILE_NAME, $INDEX_ROOT and $ATTRIBUTE_LIST, a whole $INDEX_ROOT ("$I30") and an
/// index block.
bytes file_name(uint64_t parent, std::u16string_view name, uint8_t name_space = 1);
bytes index_root(const std::vector<uint64_t>& children);
bytes index_attribute(const std::vector<uint64_t>& children);
bytes index_block(const std::vector<uint64_t>& children);

/// The same for entries that carry names; without one an entry has none.
using named_children = std::vector<std::pair<uint64_t, std::u16string>>;
bytes named_index_attribute(const named_children& children);
bytes named_index_block(const named_children& children);
bytes list_entry(uint32_t type, uint64_t entry, uint16_t sequence, uint16_t id);

class ntfs_builder {
 public:
  static constexpr size_t cluster_bytes = 1024;
  static constexpr size_t mft_cluster = 4;
  static constexpr size_t record_count = 32;

  /// A volume of `clusters` with a boot sector, record 0, and in the root directory (5) the
  /// directories Windows (10), System32 (11) and config (12), each with the next one in it; the
  /// last one lists entry 13.
  explicit ntfs_builder(size_t clusters = 128);

  /// Writes a record over the one that stands there, fixups included.
  void record(uint64_t entry, const std::vector<bytes>& attributes, uint16_t sequence = 1,
              uint16_t flags = 1, uint64_t base = 0);
  void cluster(uint64_t lcn, const bytes& content);

  /// Where the record stands in the volume.
  static size_t record_at(uint64_t entry) { return (mft_cluster + entry) * cluster_bytes; }

  bytes volume;
};

}  // namespace test_support
