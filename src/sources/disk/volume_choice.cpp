#include "sources/disk/volume_choice.h"

#include <algorithm>

#include "sources/disk/boot_sector.h"
#include "sources/disk/partition_types.h"
#include "sources/disk/partitions.h"

namespace ovrik {

namespace {

bool has_ntfs_at(RAW_DISK_IO& disk, uint64_t offset) {
  std::vector<uint8_t> sector(boot_sector::bytes);
  auto size = static_cast<uint32_t>(sector.size());
  return disk.read(sector.data(), size, offset) && boot_sector::is_ntfs(byte_view(sector));
}

bool lies_inside(const RAW_DISK_IO& disk, const partition_info& partition) {
  const uint64_t disk_sectors = disk.size() / partition.bytes_per_sector;
  return disk_sectors >= partition.start_sector &&
         disk_sectors - partition.start_sector >= partition.sector_count;
}

/// Looks through the partitions of `choice` for the volume.
void choose_partition(volume_choice& choice, const RAW_DISK_IO& disk, bool ignore_size) {
  choice.outcome = volume_outcome::no_ntfs;
  for (const partition_info& partition : choice.partitions) {
    const bool ntfs = is_ntfs_type(partition.type);
    const uint64_t begin = partition.byte_offset();
    if (begin == choice.asked_offset && ntfs) {
      const bool fine = ignore_size || lies_inside(disk, partition);
      choice.outcome = fine ? volume_outcome::at_offset : volume_outcome::cut_short;
      choice.offset = begin;
      return;
    }
    if (begin == choice.asked_offset) {
      choice.findings.push_back({partition_fault::not_ntfs, partition});
    } else if (ntfs) {
      choice.outcome = volume_outcome::other_offset;
      choice.offset = begin;
      if (disk.size() < begin) {
        choice.findings.push_back({partition_fault::begins_outside, partition});
      }
    }
  }
}

}  // namespace

const partition_info* volume_choice::partition() const {
  const auto found = std::find_if(
      partitions.begin(), partitions.end(),
      [this](const partition_info& partition) { return partition.byte_offset() == offset; });
  return found == partitions.end() ? nullptr : &*found;
}

volume_choice choose_volume(RAW_DISK_IO& disk, uint64_t asked_offset, bool ignore_size) {
  volume_choice choice;
  choice.asked_offset = asked_offset;
  choice.offset = asked_offset;
  if (disk.size() < asked_offset) {
    choice.outcome = volume_outcome::offset_outside;
    return choice;
  }
  if (!find_partitions(disk, choice.partitions, false)) {
    for (const uint64_t place : {asked_offset, uint64_t{0}}) {
      if (!has_ntfs_at(disk, place)) continue;
      choice.outcome = volume_outcome::at_offset;
      choice.offset = place;
      choice.partitions.clear();
      return choice;
    }
    if (!find_partitions(disk, choice.partitions, true)) {
      choice.partitions.clear();
      return choice;
    }
    choice.table_is_guess = true;
  }
  choose_partition(choice, disk, ignore_size);
  const bool is_listed =
      choice.outcome == volume_outcome::at_offset || choice.outcome == volume_outcome::cut_short;
  // A partition that was deleted, or that another layer hides.
  if (!is_listed && has_ntfs_at(disk, asked_offset)) {
    choice.outcome = volume_outcome::at_offset;
    choice.offset = asked_offset;
  }
  return choice;
}

}  // namespace ovrik
