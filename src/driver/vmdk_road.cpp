#include "driver/vmdk_road.h"

#include <memory>
#include <utility>

#include "driver/host/console.h"
#include "driver/plain_hive.h"
#include "driver/volume_source.h"
#include "sources/disk/partitions.h"

namespace ovrik {

namespace {

/// The volume at `offset`, or, without one, at the first partition that the disk names.
ntfs_volume volume_on(std::unique_ptr<RAW_DISK_IO> disk, uint64_t offset) {
  partition_list list;
  if (offset == 0 && find_partitions(*disk, list, false)) offset = list.front().byte_offset();
  return ntfs_volume(std::move(disk), offset);
}

}  // namespace

int32_t run_vmdk_road(opened_source& source, const hive_output& output) {
  ntfs_volume volume = volume_on(std::move(source.disk), source.volume_offset);
  if (!volume.mount()) return -1;
  const auto hive = read_volume_hive(volume, default_hive_path, output.opening);
  if (hive == nullptr || !is_system_hive(*hive)) return 0;
  if (print_hive(output, *hive, source.path) == hive_outcome::nothing_found) {
    print_problem("probs parsing from %s\n", source.path.c_str());
  }
  return 0;
}

}  // namespace ovrik
