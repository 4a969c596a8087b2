#include "driver/opened_source.h"

#include <sstream>
#include <vector>

#include "driver/host/console.h"
#include "driver/host/live_system.h"
#include "sources/disk/ntfs_offset.h"
#include "sources/disk/vmdk_chain_check.h"
#include "sources/disk/vmdk_collection.h"

namespace ovrik {

namespace {

/// An image must have an NTFS volume at the offset asked for or, if none was, at its start.
bool open_image_disk(opened_source& opened, const source_options& source) {
  opened.disk = open_image(source.path);
  if (opened.disk == nullptr) {
    print_message("invalid image: %s\n\n", source.path.c_str());
    return false;
  }
  std::ostringstream text;
  bool found = false;
  if (pick_ntfs_offset(text, found, opened.volume_offset, *opened.disk, source.ignore_image_size)) {
    return true;
  }
  if (source.volume_offset == 0 && found && opened.volume_offset == 0) return true;
  print_message("%s\n", text.str().c_str());
  return false;
}

/// The option and the files as they can be typed: in one list, but for names that a list would
/// split.
std::string option_text(const std::vector<std::string>& files) {
  std::string list, further;
  for (const std::string& file : files) {
    if (file.find_first_of("|,;") != std::string::npos) {
      further += " -vmdk \"" + file + '"';
    } else {
      list += (list.empty() ? "" : " | ") + file;
    }
  }
  return "-vmdk \"" + list + '"' + further;
}

/// Checks the files and says what is wrong with them and, if there are any, which to name instead.
bool check_chain(const std::vector<std::string>& files) {
  std::ostringstream text;
  std::vector<std::string> suggested;
  if (vmdk_check_chain(files, text, suggested)) return true;
  print_message("%s\n", text.str().c_str());
  if (!suggested.empty()) print_message("suggested array: %s\n", option_text(suggested).c_str());
  return false;
}

/// Virtual disks must have an NTFS volume at the offset asked for or anywhere.
bool open_virtual_disk(opened_source& opened, const source_options& source) {
  if (!check_chain(source.vmdk_files)) return false;
  opened.disk = open_vmdk_chain(source.vmdk_files);
  if (opened.disk == nullptr) {
    print_message("invalid disk collection of snaps \n");
    return false;
  }
  std::ostringstream text;
  bool found = false;
  if (pick_ntfs_offset(text, found, opened.volume_offset, *opened.disk, source.ignore_image_size) ||
      found) {
    return true;
  }
  print_message("%s", text.str().c_str());
  return false;
}

}  // namespace

bool open_source(opened_source& opened, const source_options& source) {
  opened.path = source.path;
  opened.volume_offset = source.volume_offset;
  switch (source.kind) {
    case source_kind::livesys:
      return find_live_hive(opened.path);
    case source_kind::shadow_copy:
      return check_shadow_copies();
    case source_kind::image:
      return open_image_disk(opened, source);
    case source_kind::vmdk:
      return open_virtual_disk(opened, source);
    case source_kind::none:
    case source_kind::extract:
    case source_kind::hive:
      break;
  }
  return true;
}

}  // namespace ovrik
