// A composed NTFS volume with a hive on it, and what is read from such volumes.

#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "sources/ntfs/ntfs_data.h"
#include "sources/ntfs/ntfs_file.h"
#include "sources/ntfs/ntfs_path.h"
#include "sources/ntfs/ntfs_volume.h"
#include "support/memory_disk.h"
#include "support/ntfs_builder.h"

namespace test_support {

/// What the path leads to: the file's bytes as text, or why there are none.
inline std::string content_of(const ntfs_builder& built, std::set<uint64_t> bad = {},
                              const std::string& path = "\\windows\\system32\\config\\system") {
  const auto volume = std::make_shared<ovrik::ntfs_volume>(
      std::make_unique<memory_disk>(built.volume, std::move(bad)), 0);
  if (!volume->mount()) return "not mounted";
  ovrik::diagnostics_log log;
  uint64_t inode = 0;
  if (!lookup_path(*volume, path, inode, log)) return "not found";
  const auto data = open_file_data(volume, inode, log);
  uni::memory_block file;
  if (data == nullptr || !read_whole_data(*data, file)) return "not read";
  return std::string(reinterpret_cast<const char*>(file.data()), file.size());
}

inline bytes name_attribute(std::u16string_view name, uint64_t parent = 12,
                            uint8_t name_space = 1) {
  return resident_attribute(0x30, file_name(parent, name, name_space));
}
inline const bytes directory_name = name_attribute(u"Config", 11);
inline const bytes hive_name = name_attribute(u"SyStem");

inline bytes data_attribute(const std::string& text, uint16_t id = 0) {
  return resident_attribute(0x80, as_bytes(text), {.id = id});
}

/// A piece of the index of a directory.
inline bytes index_piece(const bytes& runs, uint64_t vcn, uint16_t id, uint64_t size = 8192) {
  return non_resident_attribute(0xA0, runs,
                                {.id = id, .name = u"$I30", .first_vcn = vcn, .size = size});
}

inline bytes list_attribute(const std::vector<bytes>& entries) {
  return resident_attribute(0x20, concat(entries));
}

/// A volume whose hive is the words "the hive", in the record itself.
inline ntfs_builder sound_volume() {
  ntfs_builder built;
  built.record(13, {hive_name, data_attribute("the hive")});
  return built;
}

}  // namespace test_support
