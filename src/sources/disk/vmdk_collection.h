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
  /// What of the files cannot be read goes to `faults`.
  explicit vmdk_collection(read_faults& faults) : m_faults(&faults) {}

  /// Opens a file and adds it under its CID. Of two files with the same CID the first one stays.
  /// False: it is no sparse VMDK that can be opened.
  bool add_disk(const std::string& path);

  /// True if a file names itself as the one that it builds on; files that did not stay count too.
  bool has_own_parent() const { return m_has_own_parent; }

  /// All files by their CIDs.
  const std::map<std::string, std::unique_ptr<vmdk_disk>>& disks() const { return m_disks; }

  /// Puts the files into a chain from the base to the newest one. False: there is no base, or a
  /// file builds on one that is missing.
  bool vmdk_link_chain();

  /// The linked files, base first.
  const std::vector<const vmdk_disk*>& chain() const { return m_chain; }

  /// Reads `size` bytes at `offset` of the virtual disk: each grain from the newest file that holds
  /// it. What no file holds or cannot be read is zeros. False: there is no chain or `size` is 0.
  bool vmdk_read(uint8_t* buffer, uint64_t size, uint64_t offset) const;

 private:
  /// Bytes that lie side by side in one file, or are zeros.
  struct piece {
    const vmdk_disk* owner = nullptr;
    uint64_t file_offset = 0;
    uint64_t size = 0;
  };

  piece piece_at(uint64_t offset) const;

  /// Reads what begins at `offset`; returns how many bytes of it are done, never 0.
  size_t read_piece(uint8_t* buffer, const piece& all, uint64_t offset) const;

  read_faults* m_faults;
  std::map<std::string, std::unique_ptr<vmdk_disk>> m_disks;
  bool m_has_own_parent = false;
  std::vector<const vmdk_disk*> m_chain;
};

/// The virtual disk that the files make up, which it holds from then on. Nothing: they make no
/// chain.
std::unique_ptr<RAW_DISK_IO> make_chain_disk(vmdk_collection files);

}  // namespace ovrik
