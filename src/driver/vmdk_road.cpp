#include "driver/vmdk_road.h"

#include <memory>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "driver/hive_road.h"
#include "driver/hive_source.h"
#include "driver/host/console.h"
#include "driver/vmdk_words.h"
#include "driver/volume_source.h"
#include "driver/volume_words.h"
#include "sources/disk/partitions.h"
#include "sources/disk/vmdk_chain.h"
#include "sources/disk/volume_choice.h"

namespace ovrik {

namespace {

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
  const vmdk_chain chain = check_vmdk_chain(options.vmdk_files);
  if (!chain.complete) {
    print_message("%s\n", vmdk_words(chain).c_str());
    if (!chain.files.empty()) {
      print_message("suggested array: %s\n", vmdk_option_text(chain, option_name).c_str());
    }
    return false;
  }
  const bool ignore_size = offset != 0 && take_flag("-ignore_image_size", args);
  if (chain.disk == nullptr) {
    print_message("invalid disk collection of snaps \n");
    return false;
  }
  const volume_choice choice = choose_volume(*chain.disk, offset, ignore_size);
  options.volume_offset = choice.offset;
  if (choice.has_volume()) return true;
  print_message("%s", volume_words(choice).c_str());
  return false;
}

int32_t run_vmdk_road(cmdline_options& options, std::ostream& out) {
  auto disk = check_vmdk_chain(options.vmdk_files).disk;
  if (disk == nullptr) return -1;
  ntfs_volume volume = open_volume_on_disks(std::move(disk), options.volume_offset);
  if (!volume.mount()) return -1;
  const auto hive = read_volume_hive(volume, default_hive_path, options);
  if (hive != nullptr && is_system_hive(*hive)) print_hive(options, out, *hive);
  return 0;
}

}  // namespace ovrik
