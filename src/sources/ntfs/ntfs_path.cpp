#include "sources/ntfs/ntfs_path.h"

#include <algorithm>
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
constexpr int fits_best = 4;

int fitness(bool in_use, bool in_directory) {
  return 1 + (in_use ? 1 : 0) + (in_directory ? 2 : 0);
}

/// What the record of a child says.
struct child_answer {
  bool readable = false;
  bool any_name = false;
  int fits = 0;
};

child_answer ask_child(ntfs_volume& volume, uint64_t child, const std::string& wanted,
                       uint64_t directory) {
  child_answer answer;
  ntfs_record_bytes record;
  answer.readable = volume.read_mft_record(child, record);
  if (!answer.readable) return answer;
  const bool in_use = record_in_use(byte_view(record));
  visit_record_names(volume, child, byte_view(record), [&](const ntfs_name& name) {
    answer.any_name = true;
    if (lower_ascii(name.name) != wanted) return;
    answer.fits = std::max(answer.fits, fitness(in_use, name.parent == directory));
  });
  return answer;
}

/// Finds the child whose own record says that it bears the name, asking all of them. False: none
/// does.
bool find_among_all(ntfs_volume& volume, const std::set<uint64_t>& children, uint64_t directory,
                    const std::string& wanted, uint64_t& found, diagnostics_log& log) {
  int best = 0;
  bool any_name = false;
  for (const uint64_t child : children) {
    if (child == directory) continue;
    const child_answer answer = ask_child(volume, child, wanted, directory);
    if (!answer.readable) diag_printf(log, "->err: readFR: inode 0x%llx", printable(child));
    if (answer.readable && !answer.any_name) {
      diag_printf(log, "->err: namelookup: inode 0x%llx", printable(child));
    }
    any_name = any_name || answer.any_name;
    if (answer.fits > best) {
      best = answer.fits;
      found = child;
    }
  }
  if (best == 0) diag_printf(log, "->err: no child %s", any_name ? "nodes" : "names");
  return best != 0;
}

/// Finds the child of `directory` that bears the name `wanted`. False: there is none.
bool find_child(ntfs_volume& volume, uint64_t directory, const std::string& wanted, uint64_t& found,
                diagnostics_log& log) {
  diag_printf(log, "->info: get children nodes");
  directory_index index;
  if (!list_dir_entries(volume, directory, wanted, index) || index.children.empty()) {
    diag_printf(log, "->info: none found");
    return false;
  }
  diag_printf(log, "->info: # children [%zu]", index.children.size());
  diag_printf(log, "->info: get children names");
  // The index knows the name; the record of the child decides.
  for (const uint64_t child : index.named) {
    if (child == directory || ask_child(volume, child, wanted, directory).fits != fits_best) {
      continue;
    }
    found = child;
    return true;
  }
  return find_among_all(volume, index.children, directory, wanted, found, log);
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
