#include "sources/ntfs/ntfs_path.h"

#include <set>
#include <vector>

#include "base/drive_letter.h"
#include "base/text.h"
#include "sources/disk/shadow_copy.h"
#include "sources/ntfs/ntfs_directory.h"

namespace ovrik {

namespace {

constexpr uint64_t root_directory = 5;  // MFT entry of the root (ROOT_FILE_NAME_INDEX_NUMBER)

unsigned long long printable(uint64_t value) { return value; }

std::vector<std::string> segments_of(const std::string& path) {
  std::vector<std::string> segments = split(path, path.find('/') == std::string::npos ? '\\' : '/');
  std::erase(segments, std::string());
  return segments;
}

/// A part of a path as it is compared: without a stream and white space at its ends, lower-case.
std::string comparable(const std::string& segment) {
  return lower_ascii(trim(segment.substr(0, segment.find(':'))));
}

/// How well a child fits a name that is looked for; the higher the better, 0 for not at all. A name
/// in the directory itself beats one that the child bears elsewhere, and a record in use beats one
/// that is not.
int fitness(byte_view record, const std::vector<ntfs_name>& names, const std::string& wanted,
            uint64_t directory) {
  int best = 0;
  for (const ntfs_name& name : names) {
    if (lower_ascii(name.name) != wanted) continue;
    const int fits = 1 + (record_in_use(record) ? 1 : 0) + (name.parent == directory ? 2 : 0);
    if (fits > best) best = fits;
  }
  return best;
}

/// Finds the child of `directory` that bears the name `wanted`. False: there is none.
bool find_child(ntfs_volume& volume, uint64_t directory, const std::string& wanted, uint64_t& found,
                diagnostics_log& log) {
  diag_printf(log, "->info: get children nodes");
  std::set<uint64_t> children;
  if (!list_dir_entries(volume, directory, children) || children.empty()) {
    diag_printf(log, "->info: none found");
    return false;
  }
  diag_printf(log, "->info: # children [%zu]", children.size());
  diag_printf(log, "->info: get children names");
  int best = 0;
  bool any_name = false;
  ntfs_record_bytes record;
  for (const uint64_t child : children) {
    if (child == directory) continue;
    if (!volume.read_mft_record(child, record)) {
      diag_printf(log, "->err: readFR: inode 0x%llx", printable(child));
      continue;
    }
    const byte_view view(record);
    const std::vector<ntfs_name> names = list_record_names(volume, child, view);
    if (names.empty()) {
      diag_printf(log, "->err: namelookup: inode 0x%llx", printable(child));
      continue;
    }
    any_name = true;
    if (const int fits = fitness(view, names, wanted, directory); fits > best) {
      best = fits;
      found = child;
    }
  }
  if (best == 0) diag_printf(log, "->err: no child %s", any_name ? "nodes" : "names");
  return best != 0;
}

}  // namespace

bool lookup_path(ntfs_volume& volume, const std::string& full_path, uint64_t& inode,
                 diagnostics_log& log) {
  inode = 0;
  const std::string path = without_shadow_copy_device(full_path);
  if (path.empty()) return false;
  diag_printf(log, "->anal: %s", path.c_str());
  std::vector<std::string> segments = segments_of(path);
  const bool from_root = path.front() == (path.find('/') == std::string::npos ? '\\' : '/');
  if (from_root) diag_printf(log, "->root dir");
  inode = root_directory;
  if (segments.empty()) {
    diag_printf(log, "->path empty");
    return from_root;
  }
  if (begins_with_drive(segments.front())) segments.erase(segments.begin());
  for (const std::string& segment : segments) {
    const std::string wanted = comparable(segment);
    diag_printf(log, "->seg: %s", wanted.c_str());
    uint64_t child = 0;
    if (!find_child(volume, inode, wanted, child, log)) {
      diag_printf(log, "->inode not found for %s", path.c_str());
      return false;
    }
    diag_printf(log, "->info: inode found for seg: %s : 0x%llx", wanted.c_str(), printable(child));
    inode = child;
  }
  return true;
}

}  // namespace ovrik
