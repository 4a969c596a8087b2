#include "sources/disk/partition_probe.h"

#include <algorithm>

namespace ovrik {

namespace {

// Boot blocks.
constexpr size_t oem_id_at = 3;
constexpr size_t oem_id_bytes = 8;
constexpr size_t bytes_per_sector_at = 11;     // u16
constexpr size_t fat32_sectors_at = 32;        // u32
constexpr size_t ntfs_sectors_at = 40;         // u64
constexpr size_t exfat_sectors_at = 72;        // u64
constexpr size_t exfat_sector_power_at = 108;  // u8
constexpr size_t fat16_name_at = 54;
constexpr size_t fat32_name_at = 82;

// ext superblock and HFS volume header, both at 1024.
constexpr size_t ext_block_count_at = 1024 + 4;   // u32
constexpr size_t ext_block_power_at = 1024 + 24;  // u32, of 1 KiB
constexpr size_t ext_mark_at = 1080;
constexpr uint16_t ext_mark = 0xEF53;
constexpr size_t hfs_mark_at = 1024;
constexpr size_t superblock_bytes = 2048;

constexpr uint16_t fat16_type = 4;
constexpr uint16_t ntfs_type_byte = 7;
constexpr uint16_t fat32_type = 12;
constexpr uint16_t linux_type = 131;
constexpr uint16_t hfs_type = 175;

void set_type(partition_info& partition, uint16_t type) {
  partition.type = static_cast<uint16_t>((partition.type & partition_info::guess_bit) | type);
}

void set_count_if_unknown(partition_info& partition, uint64_t count) {
  if (partition.sector_count == 0) partition.sector_count = count;
}

void set_sector_size(partition_info& partition, uint32_t bytes) {
  // The offset of a partition follows the sector size of its table.
  if (partition.start_sector == 0 && bytes != 0) partition.bytes_per_sector = bytes;
}

bool probe_ext(partition_info& partition, byte_view bytes) {
  if (bytes.size() < superblock_bytes || bytes.u16_at(ext_mark_at) != ext_mark) return false;
  set_type(partition, linux_type);
  const uint32_t power = bytes.u32_at(ext_block_power_at);
  const uint64_t block_bytes = power < 16 ? uint64_t{1024} << power : 0;
  set_count_if_unknown(partition, block_bytes * bytes.u32_at(ext_block_count_at));
  return true;
}

bool probe_hfs(partition_info& partition, byte_view bytes) {
  if (bytes.size() < superblock_bytes ||
      !(bytes.text_at(hfs_mark_at, "H+") || bytes.text_at(hfs_mark_at, "HX"))) {
    return false;
  }
  set_type(partition, hfs_type);
  return true;
}

bool probe_fat(partition_info& partition, byte_view bytes) {
  if (bytes.text_at(fat32_name_at, "FAT32")) {
    set_type(partition, fat32_type);
    partition.sector_count = bytes.u32_at(fat32_sectors_at);
    return true;
  }
  if (!bytes.text_at(fat16_name_at, "FAT16")) return false;
  set_type(partition, fat16_type);
  set_count_if_unknown(partition, bytes.u32_at(fat32_sectors_at));
  return true;
}

bool recognise(partition_info& partition, byte_view bytes) {
  if (bytes.text_at(oem_id_at, "EXFAT   ")) {
    set_type(partition, ntfs_type_byte);
    const uint8_t power = bytes.u8_at(exfat_sector_power_at);
    set_sector_size(partition, power < 16 ? 1U << power : 0);
    set_count_if_unknown(partition, bytes.u64_at(exfat_sectors_at));
    return true;
  }
  if (bytes.text_at(oem_id_at, "NTFS    ") || bytes.text_at(oem_id_at, "-FVE-FS-")) {
    set_type(partition, ntfs_type_byte);
    set_sector_size(partition, bytes.u16_at(bytes_per_sector_at));
    set_count_if_unknown(partition, bytes.u64_at(ntfs_sectors_at));
    return true;
  }
  if (probe_fat(partition, bytes) || probe_ext(partition, bytes)) return true;
  const byte_view oem_id = bytes.clip(oem_id_at, oem_id_bytes);
  const bool no_oem_id = std::all_of(oem_id.data(), oem_id.data() + oem_id.size(),
                                     [](uint8_t byte) { return byte == 0; });
  return no_oem_id && probe_hfs(partition, bytes);
}

}  // namespace

bool probe_filesystem(partition_info& partition, byte_view bytes) {
  if (bytes.size() < 512 || !recognise(partition, bytes)) return false;
  partition.recognised = true;
  return true;
}

}  // namespace ovrik
