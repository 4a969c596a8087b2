// The entries of an NTFS directory: its $I30 index and the names that its children bear.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>

#include "sources/ntfs/ntfs_volume.h"

namespace ovrik {

/// What the index of a directory lists: MFT entries.
struct directory_index {
  std::set<uint64_t> children;  ///< all of them, as many as the volume can hold
  std::set<uint64_t> named;     ///< those among them that the index gives the wanted name
};

/// Fills `index` with what the index of directory `inode` (its MFT entry) lists: in its root and in
/// every block of its allocation, whether or not the tree still uses the block. `wanted` is a name
/// in UTF-8, A to Z as a to z.
/// False: the directory's record cannot be read.
bool list_dir_entries(ntfs_volume& volume, uint64_t inode, const std::string& wanted,
                      directory_index& index);

/// A name that a file bears in a directory.
struct ntfs_name {
  uint64_t parent = 0;  ///< MFT entry of that directory
  std::string name;     ///< UTF-8
};

using name_visitor = std::function<void(const ntfs_name& name)>;

/// Visits the names of a file in its record and in those that its attribute list names, without
/// those that are only for DOS. `entry` is the number of `record` in the MFT.
void visit_record_names(ntfs_volume& volume, uint64_t entry, byte_view record,
                        const name_visitor& visit);

}  // namespace ovrik
