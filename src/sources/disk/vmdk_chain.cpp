#include "sources/disk/vmdk_chain.h"

#include <algorithm>
#include <new>
#include <utility>

#include "base/text.h"
#include "sources/disk/vmdk_collection.h"
#include "sources/host/fileio.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

bool can_be_opened(const std::string& path) {
  uni::fileio file;
  return file.open_read(path);
}

/// Opens a file of the chain. False: it does not open, which `chain` then says.
bool add_file(vmdk_collection& disks, const std::string& path, vmdk_chain& chain) {
  try {
    if (disks.add_disk(path)) return true;
    chain.fault = vmdk_fault::not_opened;
    chain.faulty_file = path;
  } catch (const std::bad_alloc&) {
    chain.fault = vmdk_fault::out_of_memory;
  }
  return false;
}

struct linked_disks {
  const vmdk_disk* base = nullptr;    ///< one that builds on nothing
  const vmdk_disk* orphan = nullptr;  ///< the first one whose parent is not there
};

linked_disks link_disks(const vmdk_collection& files) {
  linked_disks links;
  for (const auto& [cid, disk] : files.disks()) {
    const vmdk_descriptor& descriptor = disk->descriptor();
    if (descriptor.is_base()) {
      links.base = disk.get();
    } else if (links.orphan == nullptr && !files.disks().contains(descriptor.parent_cid)) {
      links.orphan = disk.get();
    }
  }
  return links;
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

/// Opens the file for its descriptor alone.
bool bears_cid(const std::string& path, const std::string& cid, read_faults& faults) {
  vmdk_disk disk(faults);
  return disk.open_disk(path) && disk.descriptor().cid == cid;
}

/// The path of the parent that the hint of `disk` means. Three places are tried: the hint as it
/// stands (in `folder` if it is only a name), the hint taken from the folder of `disk`, and its
/// last component in `folder`. Of those that can be opened, the first with the right CID counts, or
/// else the first. Empty: none can be opened.
std::string place_of_parent(const vmdk_disk& disk, const std::string& hint,
                            const std::string& folder, read_faults& faults) {
  const vmdk_descriptor& descriptor = disk.descriptor();
  const bool windows = lower_ascii(descriptor.encoding).find("windows") != std::string::npos;
  const bool is_path = hint.find(windows ? '\\' : '/') != std::string::npos;
  const std::string name = hint.substr(hint.find_last_of("\\/") + 1);
  std::vector<std::string> places = {is_path ? hint : folder + hint, folder_of(disk.path()) + hint};
  if (!name.empty()) places.push_back(folder + name);
  std::erase_if(places, [](const std::string& place) { return !can_be_opened(place); });
  if (places.empty()) return "";
  const auto right = std::find_if(places.begin(), places.end(), [&](const std::string& place) {
    return bears_cid(place, descriptor.parent_cid, faults);
  });
  return right == places.end() ? places.front() : *right;
}

}  // namespace

vmdk_chain check_vmdk_chain(const std::vector<std::string>& paths, read_faults& faults) {
  vmdk_chain chain;
  chain.files = paths;
  const std::string folder = paths.empty() ? "" : folder_of(paths.front());
  vmdk_collection disks(faults);
  for (const std::string& path : paths) {
    if (!add_file(disks, path, chain)) return chain;
  }
  while (true) {
    if (disks.has_own_parent()) {
      chain.fault = vmdk_fault::own_parent;
      return chain;
    }
    const linked_disks links = link_disks(disks);
    std::string hint = links.orphan == nullptr ? "" : links.orphan->descriptor().parent_file_hint;
    remove_all(hint, '"');
    if (links.orphan == nullptr || hint_is_known(disks, links.base, hint)) {
      chain.complete = chain.found_parents.empty() && links.base != nullptr;
      if (chain.complete) chain.disk = make_chain_disk(std::move(disks));
      return chain;
    }
    const std::string parent = place_of_parent(*links.orphan, hint, folder, faults);
    // A parent that was found once and is still missing bears another CID.
    const bool found_before =
        std::find(chain.files.begin(), chain.files.end(), parent) != chain.files.end();
    if (parent.empty() || found_before) {
      chain.fault = vmdk_fault::parent_gone;
      return chain;
    }
    chain.found_parents.push_back({links.orphan->path(), hint});
    chain.files.push_back(parent);
    if (!add_file(disks, parent, chain)) return chain;
  }
}

}  // namespace ovrik
