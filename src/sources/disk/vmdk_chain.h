// Whether the files that a user names make up a whole virtual disk, which ones are missing, and the
// disk itself.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sources/disk/raw_disk_io.h"
#include "sources/host/read_faults.h"

namespace ovrik {

/// Why the search for missing files ended without a chain.
enum class vmdk_fault {
  none,           ///< it ended because nothing more is missing
  not_opened,     ///< `faulty_file` is not there or no sparse VMDK
  out_of_memory,  ///< the tables of a file do not fit the memory
  own_parent,     ///< `faulty_file` names itself as the one that it builds on
  parent_gone,    ///< a file builds on one that is nowhere, or not where its hint leads
};

/// A file whose parent was not named, but was found.
struct found_parent {
  std::string child;  ///< path of the file, as it was named or found
  std::string hint;   ///< where its descriptor says that the parent is, without quotes
};

/// What the files of a virtual disk turned out to be. All paths are UTF-8.
struct vmdk_chain {
  /// The files that were named include a base and every parent, be one there by its name only.
  bool complete = false;
  vmdk_fault fault = vmdk_fault::none;
  std::string faulty_file;
  std::vector<found_parent> found_parents;  ///< in the order in which they were found
  /// The files that were named and behind them the parents that were found: what should be named.
  std::vector<std::string> files;
  /// Path of a file whose parent is there by its name, but bears another CID. Empty: none.
  std::string misfit;
  bool is_ring = false;                       ///< each file builds on another one: none is a base
  std::vector<std::string> compressed_files;  ///< whose grains are compressed, and read wrongly
  /// Files that were named and that the disk is not made of: of two with one parent, of two bases,
  /// or of two with one CID one is left out, and what builds on it.
  std::vector<std::string> left_out;
  /// The disk that the files make up. Nothing: they are not complete, or the CID of a parent is not
  /// the one that its child was made for.
  std::unique_ptr<RAW_DISK_IO> disk;
};

/// Opens the files at `paths`, in any order, and looks for parents that are missing among them. A
/// parent is known by its CID; where it may lie tells the hint of its child. The files are opened
/// once: a disk that comes back holds them. What of them cannot be read goes to `faults`, for as
/// long as the disk is in use.
vmdk_chain check_vmdk_chain(const std::vector<std::string>& paths, read_faults& faults);

}  // namespace ovrik
