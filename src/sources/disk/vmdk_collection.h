// The files of a virtual disk: a base and the snapshots that build on it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "sources/disk/raw_disk_io.h"
#include "sources/disk/vmdk_disk.h"

namespace ovrik {

/// The opened files, first without and then in an order.
class vmdk_collection {
 public:
  /// Adds an opened file under its CID. Of two files with the same CID the first one stays; nothing
  /// comes back for the second.
  const vmdk_disk* add_disk(std::unique_ptr<vmdk_disk> disk);

  /// Path of a file that names itself as the one that it builds on, be it one that did not stay.
  /// Empty: there is none.
  const std::string& own_parent() const { return m_own_parent; }

  /// All files by their CIDs.
  const std::map<std::string, std::unique_ptr<vmdk_disk>>& disks() const { return m_disks; }

  /// Puts the files into a chain from the base to the newest one. False: there is no base, or a
  /// file builds on one that is missing.
  bool vmdk_link_chain();

  /// Paths of the files that are not linked, in no certain order.
  std::vector<std::string> left_out() const;

  /// The linked files, base first.
  const std::vector<vmdk_disk*>& chain() const { return m_chain; }

  /// Reads `size` bytes at `offset` of the virtual disk: each grain from the newest file that holds
  /// it. What no file holds or cannot be read is zeros. False: there is no chain or `size` is 0.
  bool vmdk_read(uint8_t* buffer, uint64_t size, uint64_t offset);

 private:
  /// Bytes that lie side by side in one file, or are zeros.
  struct piece {
    const vmdk_disk* owner = nullptr;
    uint64_t file_offset = 0;
    uint64_t size = 0;
  };

  piece piece_at(uint64_t offset);

  /// Reads what begins at `offset`; returns how many bytes of it are done, never 0.
  size_t read_piece(uint8_t* buffer, const piece& all, uint64_t offset);

  std::map<std::string, std::unique_ptr<vmdk_disk>> m_disks;
  std::vector<std::string> m_second_files;  ///< paths of those whose CID was there already
  std::string m_own_parent;
  std::vector<vmdk_disk*> m_chain;
};

/// The virtual disk that the files make up, which it holds from then on. Nothing: they make no
/// chain. `left_out` becomes the paths of those that are not part of it.
std::unique_ptr<RAW_DISK_IO> make_chain_disk(vmdk_collection files,
                                             std::vector<std::string>& left_out);

}  // namespace ovrik
