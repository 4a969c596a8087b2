#include "sources/disk/vmdk_chain_check.h"

#include <algorithm>
#include <new>

#include "base/text.h"
#include "sources/disk/vmdk_collection.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

bool exists(const std::string& path) {
  uni::fileio file;
  return file.open_read(path);
}

/// Opens all files. False: one does not open, which is said.
bool add_disks(vmdk_collection& files, const std::vector<std::string>& paths, std::ostream& text) {
  for (const std::string& path : paths) {
    try {
      if (files.add_disk(path)) continue;
      text << path << " can't be opened\n";
    } catch (const std::bad_alloc&) {
      text << "prob creating virtual vmware disk mapping\n";
    }
    return false;
  }
  return true;
}

struct linked_disks {
  const vmdk_disk* base = nullptr;
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

/// True if the file that the hint means is there already, though its CID says something else.
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

bool bears_cid(const std::string& path, const std::string& cid) {
  vmdk_disk disk;
  return disk.open_disk(path) && disk.descriptor().cid == cid;
}

/// Where the parent that the hint means can be opened: at its place, from the folder of the disk
/// that it is for, or by its last component in `folder`. Of several the first one with the right
/// CID, or else the first. Empty: nowhere.
std::string place_of_parent(const vmdk_disk& disk, const std::string& hint,
                            const std::string& folder) {
  const vmdk_descriptor& descriptor = disk.descriptor();
  const bool windows = lower_ascii(descriptor.encoding).find("windows") != std::string::npos;
  const bool is_path = hint.find(windows ? '\\' : '/') != std::string::npos;
  const std::string name = hint.substr(hint.find_last_of("\\/") + 1);
  std::vector<std::string> places = {is_path ? hint : folder + hint, folder_of(disk.path()) + hint};
  if (!name.empty()) places.push_back(folder + name);
  std::erase_if(places, [](const std::string& place) { return !exists(place); });
  if (places.empty()) return "";
  const auto right = std::find_if(places.begin(), places.end(), [&](const std::string& place) {
    return bears_cid(place, descriptor.parent_cid);
  });
  return right == places.end() ? places.front() : *right;
}

}  // namespace

bool vmdk_check_chain(const std::vector<std::string>& paths, std::ostream& text,
                      std::vector<std::string>& suggested) {
  suggested = paths;
  const std::string folder = paths.empty() ? "" : folder_of(paths.front());
  bool complete = true;
  while (true) {
    vmdk_collection files;
    if (!add_disks(files, suggested, text)) return false;
    if (files.has_own_parent()) {
      text << "Child VMDK CID errors, aborting\n";
      return false;
    }
    const linked_disks links = link_disks(files);
    if (links.orphan == nullptr) return complete && links.base != nullptr;
    std::string hint = links.orphan->descriptor().parent_file_hint;
    remove_all(hint, '"');
    if (hint_is_known(files, links.base, hint)) return complete && links.base != nullptr;
    const std::string parent = place_of_parent(*links.orphan, hint, folder);
    // A parent that was found once and is still missing bears another CID.
    const bool found_before =
        std::find(suggested.begin(), suggested.end(), parent) != suggested.end();
    if (parent.empty() || found_before) {
      text << "Child VMDK points to a parent VMDK that doesn't exist, aborting\n";
      return false;
    }
    text << "=> vmdk file: " << links.orphan->path() << '\n'
         << " depends on parent vmdk " << hint << '\n';
    suggested.push_back(parent);
    complete = false;
  }
}

}  // namespace ovrik
