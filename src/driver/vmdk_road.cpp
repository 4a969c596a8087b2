#include "driver/vmdk_road.h"

#include <memory>
#include <sstream>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "driver/hive_road.h"
#include "driver/hive_source.h"
#include "driver/host/console.h"
#include "driver/volume_source.h"
#include "sources/disk/ntfs_offset.h"
#include "sources/disk/partitions.h"
#include "sources/disk/vmdk_chain_check.h"
#include "sources/disk/vmdk_collection.h"

namespace ovrik {

namespace {

/// The option and the files as they can be typed: in one list, but for names that a list would
/// split.
std::string option_text(const std::vector<std::string>& files, const char* option_name) {
  std::string list, further;
  for (const std::string& file : files) {
    if (file.find_first_of("|,;") != std::string::npos) {
      further += std::string(" ") + option_name + " \"" + file + '"';
    } else {
      list += (list.empty() ? "" : " | ") + file;
    }
  }
  return std::string(option_name) + " \"" + list + '"' + further;
}

/// Checks the files and says what is wrong with them and, if there are any, which to name instead.
bool check_chain(const std::vector<std::string>& files, const char* option_name) {
  std::ostringstream text;
  std::vector<std::string> suggested;
  if (vmdk_check_chain(files, text, suggested)) return true;
  print_message("%s\n", text.str().c_str());
  if (!suggested.empty()) {
    print_message("suggested array: %s\n", option_text(suggested, option_name).c_str());
  }
  return false;
}

/// Sets `offset` to the volume that is meant. False: there is none, which is said.
bool pick_offset_on_disks(const std::vector<std::string>& files, uint64_t& offset,
                          bool ignore_size) {
  const auto disk = open_vmdk_chain(files);
  if (disk == nullptr) {
    print_message("invalid disk collection of snaps \n");
    return false;
  }
  std::ostringstream text;
  bool found = false;
  if (pick_ntfs_offset(text, found, offset, *disk, ignore_size) || found) return true;
  print_message("%s", text.str().c_str());
  return false;
}

/// The volume at `offset`, or, without one, at the first partition that the disk names.
ntfs_volume open_volume_on_disks(std::unique_ptr<RAW_DISK_IO> disk, uint64_t offset) {
  partition_list list;
  if (offset == 0 && find_partitions(*disk, list, false)) offset = list.front().byte_offset();
  return ntfs_volume(std::move(disk), offset);
}

}  // namespace

bool parse_source_options(cmdline_options& options, const std::string& list,
                          const char* option_name, argument_list& args) {
  for (std::string& file : list_parts(list)) options.vmdk_files.push_back(std::move(file));
  std::string value;
  while (take_option(option_name, value, args)) {
    remove_all(value, '"');
    options.vmdk_files.push_back(trim(value));
  }
  uint64_t offset = options.volume_offset;
  if (take_option("-offset", value, args)) parse_u64(value, offset);
  if (!check_chain(options.vmdk_files, option_name)) return false;
  const bool ignore_size = offset != 0 && take_flag("-ignore_image_size", args);
  if (!pick_offset_on_disks(options.vmdk_files, offset, ignore_size)) return false;
  options.volume_offset = offset;
  return true;
}

int32_t run_vmdk_road(cmdline_options& options, std::ostream& out) {
  auto disk = open_vmdk_chain(options.vmdk_files);
  if (disk == nullptr) return -1;
  ntfs_volume volume = open_volume_on_disks(std::move(disk), options.volume_offset);
  if (!volume.mount()) return -1;
  const auto hive = read_volume_hive(volume, default_hive_path, options);
  if (hive != nullptr && is_system_hive(*hive)) print_hive(options, out, *hive);
  return 0;
}

}  // namespace ovrik
