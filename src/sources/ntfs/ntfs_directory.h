// The entries of an NTFS directory: its $I30 index and the names that its children bear.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "sources/ntfs/ntfs_volume.h"

namespace ovrik {

/// Fills `children` with the MFT entries that the index of directory `inode` (its MFT entry) lists:
/// those of its root and of every block of its allocation, whether or not the tree still uses the
/// block.
/// False: the directory's record cannot be read.
bool list_dir_entries(ntfs_volume& volume, uint64_t inode, std::set<uint64_t>& children);

/// A name that a file bears in a directory.
struct ntfs_name {
  uint64_t parent = 0;  ///< MFT entry of that directory
  std::string name;     ///< UTF-8
};

/// The names of a file in its record and in those that its attribute list names, without those
/// that are only for DOS.
std::vector<ntfs_name> list_record_names(ntfs_volume& volume, uint64_t entry, byte_view record);

}  // namespace ovrik
