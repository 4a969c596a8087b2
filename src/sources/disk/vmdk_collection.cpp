#include "sources/disk/vmdk_collection.h"

#include <algorithm>
#include <cstring>

namespace ovrik {

namespace {

class vmdk_chain_disk : public RAW_DISK_IO {
 public:
  explicit vmdk_chain_disk(vmdk_collection files) : m_files(std::move(files)) {
    for (const vmdk_disk* disk : m_files.chain()) {
      m_total_size = std::max(m_total_size, disk->capacity());
      m_stored_size += disk->file_size();
    }
  }

  bool read(void* buffer, uint32_t& size, uint64_t offset) override {
    const uint64_t wanted = size;
    size = 0;
    if (offset >= m_total_size) return false;
    const uint64_t there = std::min(wanted, m_total_size - offset);
    if (!m_files.vmdk_read(static_cast<uint8_t*>(buffer), there, offset)) return false;
    size = static_cast<uint32_t>(there);
    return true;
  }

  uint64_t size() const override { return m_total_size; }
  uint64_t stored_size() const override { return m_stored_size; }

 private:
  vmdk_collection m_files;
  uint64_t m_total_size = 0;
  uint64_t m_stored_size = 0;
};

}  // namespace

bool vmdk_collection::add_disk(const std::string& path) {
  auto disk = std::make_unique<vmdk_disk>(*m_faults);
  if (!disk->open_disk(path)) return false;
  if (disk->descriptor().is_own_parent()) m_has_own_parent = true;
  const std::string cid = disk->descriptor().cid;
  m_disks.emplace(cid, std::move(disk));
  return true;
}

bool vmdk_collection::vmdk_link_chain() {
  const vmdk_disk* base = nullptr;
  std::map<const vmdk_disk*, const vmdk_disk*> children;
  bool complete = true;
  for (const auto& [cid, disk] : m_disks) {
    if (disk->descriptor().is_base()) {
      base = disk.get();
      continue;
    }
    const auto parent = m_disks.find(disk->descriptor().parent_cid);
    if (parent == m_disks.end()) {
      complete = false;
    } else {
      children[parent->second.get()] = disk.get();
    }
  }
  m_chain.clear();
  if (!complete || base == nullptr) return false;
  m_chain.push_back(base);
  for (auto child = children.find(base); child != children.end();
       child = children.find(child->second)) {
    if (m_chain.size() > m_disks.size()) return false;
    m_chain.push_back(child->second);
  }
  return true;
}

vmdk_collection::piece vmdk_collection::piece_at(uint64_t offset) const {
  piece found;
  found.size = ~uint64_t{0};
  for (auto disk = m_chain.rbegin(); disk != m_chain.rend(); ++disk) {
    // Grains need not be of one size: the piece ends with the first one that does.
    const uint64_t grain_bytes = (*disk)->grain_bytes();
    found.size = std::min(found.size, grain_bytes - offset % grain_bytes);
    const grain_state state = (*disk)->vmdk_locate(offset, found.file_offset);
    if (state == grain_state::stored) found.owner = *disk;
    if (state != grain_state::absent) break;
  }
  return found;
}

size_t vmdk_collection::read_piece(uint8_t* buffer, const piece& all, uint64_t offset) const {
  const auto wanted = static_cast<size_t>(all.size);
  const size_t got = all.owner == nullptr ? 0 : all.owner->read(buffer, wanted, all.file_offset);
  uint64_t missing = wanted - got;
  if (all.owner != nullptr && all.file_offset + got < all.owner->file_size()) {
    // What cannot be read in the midst of a file costs no more than the rest of its own grain.
    missing = std::min(missing, piece_at(offset + got).size);
  }
  std::memset(buffer + got, 0, static_cast<size_t>(missing));
  return got + static_cast<size_t>(missing);
}

bool vmdk_collection::vmdk_read(uint8_t* buffer, uint64_t size, uint64_t offset) const {
  if (m_chain.empty() || size == 0) return false;
  while (size != 0) {
    // Grains that lie side by side come in one read.
    piece all = piece_at(offset);
    while (all.size < size) {
      const piece next = piece_at(offset + all.size);
      const bool adjacent =
          next.owner == all.owner &&
          (all.owner == nullptr || next.file_offset == all.file_offset + all.size);
      if (!adjacent) break;
      all.size += next.size;
    }
    all.size = std::min(all.size, size);
    const size_t done = read_piece(buffer, all, offset);
    buffer += done;
    size -= done;
    offset += done;
  }
  return true;
}

std::unique_ptr<RAW_DISK_IO> make_chain_disk(vmdk_collection files) {
  if (!files.vmdk_link_chain()) return nullptr;
  return std::make_unique<vmdk_chain_disk>(std::move(files));
}

}  // namespace ovrik
