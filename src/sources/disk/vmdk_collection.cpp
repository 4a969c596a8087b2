#include "sources/disk/vmdk_collection.h"

#include <algorithm>
#include <cstring>

namespace ovrik {

namespace {

/// Pieces of tables that all files of a chain keep together: 2 MiB.
constexpr size_t most_pieces = 128;

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

const vmdk_disk* vmdk_collection::add_disk(std::unique_ptr<vmdk_disk> disk) {
  if (disk->descriptor().is_own_parent()) m_own_parent = disk->path();
  const std::string cid = disk->descriptor().cid;
  if (m_disks.contains(cid)) {
    m_second_files.push_back(disk->path());
    return nullptr;
  }
  return m_disks.emplace(cid, std::move(disk)).first->second.get();
}

bool vmdk_collection::vmdk_link_chain() {
  vmdk_disk* base = nullptr;
  std::map<const vmdk_disk*, vmdk_disk*> children;
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
  for (vmdk_disk* disk : m_chain) disk->keep_pieces(most_pieces / m_chain.size());
  return true;
}

std::vector<std::string> vmdk_collection::left_out() const {
  std::vector<std::string> paths = m_second_files;
  for (const auto& [cid, disk] : m_disks) {
    const bool linked = std::find(m_chain.begin(), m_chain.end(), disk.get()) != m_chain.end();
    if (!linked) paths.push_back(disk->path());
  }
  return paths;
}

vmdk_collection::piece vmdk_collection::piece_at(uint64_t offset) {
  piece found;
  found.size = ~uint64_t{0};
  for (auto disk = m_chain.rbegin(); disk != m_chain.rend(); ++disk) {
    // Grains need not be of one size: the piece ends with the first one that does.
    const grain_run run = (*disk)->vmdk_locate(offset);
    found.size = std::min(found.size, run.size);
    if (run.state == grain_state::stored) {
      found.owner = *disk;
      found.file_offset = run.file_offset;
    }
    if (run.state != grain_state::absent) break;
  }
  return found;
}

size_t vmdk_collection::read_piece(uint8_t* buffer, const piece& all, uint64_t offset) {
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

bool vmdk_collection::vmdk_read(uint8_t* buffer, uint64_t size, uint64_t offset) {
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

std::unique_ptr<RAW_DISK_IO> make_chain_disk(vmdk_collection files,
                                             std::vector<std::string>& left_out) {
  if (!files.vmdk_link_chain()) return nullptr;
  left_out = files.left_out();
  return std::make_unique<vmdk_chain_disk>(std::move(files));
}

}  // namespace ovrik
