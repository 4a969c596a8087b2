#include "sources/disk/vmdk_chain.h"

#include <algorithm>
#include <map>
#include <new>
#include <set>
#include <utility>

#include "base/text.h"
#include "sources/disk/vmdk_collection.h"
#include "sources/host/fileio.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

constexpr size_t most_files = 1024;  // more than a program may usually hold open

bool can_be_opened(const std::string& path) {
  uni::fileio file;
  return file.open_read(path);
}

/// True if the file that the hint means is there already, though its CID says something else: the
/// hint stands in the path of the base or, without a base, of any file beside others.
bool hint_is_known(const vmdk_collection& files, const vmdk_disk* base, const std::string& hint) {
  const auto holds_hint = [&hint](const vmdk_disk& disk) {
    return disk.path().find(hint) != std::string::npos;
  };
  if (base != nullptr) return holds_hint(*base);
  return files.disks().size() > 1 &&
         std::any_of(files.disks().begin(), files.disks().end(),
                     [&](const auto& entry) { return holds_hint(*entry.second); });
}

std::string folder_of(const std::string& path) {
  return path.substr(0, path.size() - last_component(path).size());
}

/// A file where a hint leads to.
struct parent_file {
  std::string path;                 ///< empty: there is none
  std::unique_ptr<vmdk_disk> disk;  ///< nothing: it is no sparse VMDK
};

/// The parent that the hint of `disk` means. Three places are tried: the hint as it stands (in
/// `folder` if it is only a name), the hint taken from the folder of `disk`, and its last component
/// in `folder`. Of the files that can be opened the first with the right CID counts, or else the
/// first. A hint never makes this program ask another computer: only files of a disk that lies
/// there itself are looked for there.
parent_file find_parent(const vmdk_disk& disk, const std::string& hint, const std::string& folder,
                        read_faults& faults) {
  const vmdk_descriptor& descriptor = disk.descriptor();
  const bool windows = lower_ascii(descriptor.encoding).find("windows") != std::string::npos;
  const bool is_path = hint.find(windows ? '\\' : '/') != std::string::npos;
  const std::string name = hint.substr(hint.find_last_of("\\/") + 1);
  std::vector<std::string> places = {is_path ? hint : folder + hint, folder_of(disk.path()) + hint};
  if (!name.empty()) places.push_back(folder + name);
  parent_file first;
  for (auto place = places.begin(); place != places.end(); ++place) {
    if (std::find(places.begin(), place, *place) != place) continue;
    if (names_other_host(*place) && !names_other_host(disk.path())) continue;
    auto parent = std::make_unique<vmdk_disk>(faults);
    const bool is_disk = parent->open_disk(*place);
    if (is_disk && parent->descriptor().cid == descriptor.parent_cid) {
      return {*place, std::move(parent)};
    }
    if (!first.path.empty() || (!is_disk && !can_be_opened(*place))) continue;
    first.path = *place;
    if (is_disk) first.disk = std::move(parent);
  }
  return first;
}

/// Goes from the files that were named to those that they build on. Each file is looked at once.
class chain_check {
 public:
  chain_check(const std::vector<std::string>& paths, read_faults& faults)
      : m_faults(faults), m_folder(paths.empty() ? "" : folder_of(paths.front())) {
    m_chain.files = paths;
    m_known.insert(paths.begin(), paths.end());
  }

  vmdk_chain run() {
    try {
      if (add_named_files()) add_parents();
    } catch (const std::bad_alloc&) {
      m_chain.fault = vmdk_fault::out_of_memory;
      m_chain.complete = false;
      m_chain.disk = nullptr;
    }
    return std::move(m_chain);
  }

 private:
  bool add_named_files() {
    for (const std::string& path : std::vector<std::string>(m_chain.files)) {
      auto disk = std::make_unique<vmdk_disk>(m_faults);
      if (!disk->open_disk(path)) disk = nullptr;
      if (!add(std::move(disk), path)) return false;
    }
    return true;
  }

  void add_parents() {
    while (m_disks.own_parent().empty()) {
      if (m_orphans.empty()) return end(nullptr);
      const vmdk_disk& orphan = *m_orphans.begin()->second;
      std::string hint = orphan.descriptor().parent_file_hint;
      remove_all(hint, '"');
      if (hint_is_known(m_disks, m_base, hint)) return end(&orphan);
      parent_file parent = find_parent(orphan, hint, m_folder, m_faults);
      if (parent.path.empty() || !m_known.insert(parent.path).second) {
        m_chain.fault = vmdk_fault::parent_gone;
        // One that was found and is still missing bears another CID.
        if (!parent.path.empty() && parent.path != orphan.path()) m_chain.misfit = orphan.path();
        return;
      }
      m_chain.found_parents.push_back({orphan.path(), hint});
      m_chain.files.push_back(parent.path);
      if (!add(std::move(parent.disk), parent.path)) return;
    }
    m_chain.fault = vmdk_fault::own_parent;
    m_chain.faulty_file = m_disks.own_parent();
  }

  /// Takes a file into the chain. False: it is none, or one too many, which `m_chain` then says.
  bool add(std::unique_ptr<vmdk_disk> disk, const std::string& path) {
    if (disk == nullptr || m_disks.disks().size() == most_files) {
      m_chain.fault = vmdk_fault::not_opened;
      m_chain.faulty_file = path;
      return false;
    }
    if (disk->is_compressed()) m_chain.compressed_files.push_back(path);
    const vmdk_disk* const added = m_disks.add_disk(std::move(disk));
    if (added == nullptr) return true;
    const vmdk_descriptor& descriptor = added->descriptor();
    const auto [first, last] = m_waiting.equal_range(descriptor.cid);
    for (auto child = first; child != last; ++child) m_orphans.erase(child->second);
    m_waiting.erase(first, last);
    if (descriptor.is_base()) {
      if (m_base == nullptr || m_base->descriptor().cid < descriptor.cid) m_base = added;
    } else if (!m_disks.disks().contains(descriptor.parent_cid)) {
      m_orphans.emplace(descriptor.cid, added);
      m_waiting.emplace(descriptor.parent_cid, descriptor.cid);
    }
    return true;
  }

  /// Nothing more is missing, but for the right parent of `misfit`, if that is one.
  void end(const vmdk_disk* misfit) {
    if (misfit != nullptr) m_chain.misfit = misfit->path();
    m_chain.is_ring = misfit == nullptr && m_base == nullptr && !m_disks.disks().empty();
    m_chain.complete = m_chain.found_parents.empty() && m_base != nullptr;
    if (m_chain.complete) m_chain.disk = make_chain_disk(std::move(m_disks), m_chain.left_out);
  }

  read_faults& m_faults;
  vmdk_chain m_chain;
  std::string m_folder;           ///< of the file that was named first
  std::set<std::string> m_known;  ///< paths of the files of the chain
  vmdk_collection m_disks;
  const vmdk_disk* m_base = nullptr;  ///< one that builds on nothing: the last one by its CID
  std::map<std::string, const vmdk_disk*> m_orphans;  ///< by their CIDs: their parents are missing
  std::multimap<std::string, std::string>
      m_waiting;  ///< CIDs of orphans, by those of their parents
};

}  // namespace

vmdk_chain check_vmdk_chain(const std::vector<std::string>& paths, read_faults& faults) {
  return chain_check(paths, faults).run();
}

}  // namespace ovrik
