#include "sources/disk/ntfs_offset.h"

#include <optional>
#include <vector>

#include "base/byte_view.h"
#include "base/number_text.h"
#include "sources/disk/partitions.h"

namespace ovrik {

namespace {

bool has_ntfs_at(RAW_DISK_IO& disk, uint64_t offset) {
  std::vector<uint8_t> sector(512);
  auto size = static_cast<uint32_t>(sector.size());
  return disk.read(sector.data(), size, offset) && byte_view(sector).text_at(3, "NTFS    ");
}

bool lies_inside(const RAW_DISK_IO& disk, const partition_info& partition) {
  const uint64_t sectors = disk.size() / partition.bytes_per_sector;
  return sectors >= partition.start_sector &&
         sectors - partition.start_sector >= partition.sector_count;
}

}  // namespace

bool pick_ntfs_offset(std::ostream& text, bool& found, uint64_t& offset, RAW_DISK_IO& disk,
                      bool ignore_size) {
  found = false;
  if (disk.size() < offset) {
    text << "volume offset 0x" << hex_text(offset) << " is not within image bounds\n";
    return false;
  }
  partition_list list;
  if (!find_partitions(disk, list, false)) {
    // A disk without a table may have a volume where one is asked for, or be one.
    for (const uint64_t place : {offset, uint64_t{0}}) {
      if (!has_ntfs_at(disk, place)) continue;
      offset = place;
      return found = true;
    }
    if (!find_partitions(disk, list, true)) {
      text << "couldn't find any partitions on disk\n";
      return false;
    }
    text << "disk is corrupted, partition info questionable\n";
  }

  std::optional<uint64_t> last_ntfs;
  for (const partition_info& partition : list) {
    const bool ntfs = is_ntfs_type(partition.type);
    const uint64_t byte_offset = partition.byte_offset();
    if (offset != byte_offset) {
      if (!ntfs) continue;
      found = true;
      last_ntfs = byte_offset;
      if (disk.size() < byte_offset) {
        text << "volume offset 0x" << hex_text(byte_offset) << " is not within image bounds\n";
      }
      continue;
    }
    if (!ntfs) {
      text << "volume offset selected 0x" << hex_text(offset) << " is not a NTFS partition, but ["
           << partition_type_name(partition.type) << "]\n";
      continue;
    }
    found = true;
    if (ignore_size || lies_inside(disk, partition)) return true;
    text << "volume offset 0x" << hex_text(offset)
         << " is a NTFS partition, however image size does not encapsulate entire volume\n";
    return false;
  }

  text << '\n';
  for (const partition_info& partition : list) {
    offset = partition.byte_offset();
    text << "volume offset [ 0x" << hex_text(offset)
         << " ] : " << partition_type_name(partition.type) << '\n';
  }
  text << '\n';
  if (last_ntfs) {
    offset = *last_ntfs;
    text << "use option [-offset 0x" << hex_text(offset) << "]\n";
  } else {
    text << "prob detecting ntfs partition\n";
  }
  return false;
}

}  // namespace ovrik
