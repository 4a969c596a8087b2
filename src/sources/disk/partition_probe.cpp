#include "sources/disk/partition_probe.h"

#include "sources/disk/boot_sector.h"
#include "sources/disk/partition_types.h"

namespace ovrik {

namespace {

// BIOS parameter blocks of FAT and NTFS and the boot sector of exFAT: offsets into the sector.
constexpr size_t fat_sectors_at = 32;          // u32, "large sectors" of FAT16 and FAT32
constexpr size_t ntfs_sectors_at = 40;         // u64
constexpr size_t exfat_sectors_at = 72;        // u64, VolumeLength
constexpr size_t exfat_sector_power_at = 108;  // u8, BytesPerSectorShift
constexpr size_t fat16_name_at = 54;           // "file system type" of the extended block
constexpr size_t fat32_name_at = 82;

// The superblock of ext2 to ext4 (ext4_super_block), and the HFS+ volume header
// (HFSPlusVolumeHeader). Both begin at 1024.
constexpr size_t superblock_at = 1024;
constexpr size_t ext_block_count_at = superblock_at + 4;   // u32, s_blocks_count
constexpr size_t ext_block_power_at = superblock_at + 24;  // u32, s_log_block_size: of 1 KiB
constexpr size_t ext_mark_at = superblock_at + 56;         // u16, s_magic
constexpr uint16_t ext_mark = 0xEF53;
constexpr uint64_t ext_least_block_bytes = 1024;

/// The largest power of two that is believed for the size of a block or sector.
constexpr uint32_t largest_power = 15;

void set_type(partition_info& partition, uint16_t type) {
  partition.type = static_cast<uint16_t>((partition.type & partition_info::guess_bit) | type);
}

void set_count_if_unknown(partition_info& partition, uint64_t sectors) {
  if (partition.sector_count == 0) partition.sector_count = sectors;
}

void set_sector_size(partition_info& partition, uint32_t bytes) {
  // Where a partition begins is counted in sectors of the size that its table has.
  if (partition.start_sector == 0 && bytes != 0) partition.bytes_per_sector = bytes;
}

bool probe_ext(partition_info& partition, byte_view bytes) {
  if (bytes.size() < superblock_end || !has_ext_mark(bytes)) return false;
  set_type(partition, partition_type::linux_data);
  const uint32_t power = bytes.u32_at(ext_block_power_at);
  const uint64_t block_bytes = power <= largest_power ? ext_least_block_bytes << power : 0;
  const uint64_t volume_bytes = block_bytes * bytes.u32_at(ext_block_count_at);
  set_count_if_unknown(partition, volume_bytes / partition.bytes_per_sector);
  return true;
}

bool probe_hfs(partition_info& partition, byte_view bytes) {
  if (bytes.size() < superblock_end) return false;
  if (!bytes.text_at(superblock_at, "H+") && !bytes.text_at(superblock_at, "HX")) return false;
  set_type(partition, partition_type::hfs);
  return true;
}

bool probe_fat(partition_info& partition, byte_view bytes) {
  if (bytes.text_at(fat32_name_at, "FAT32")) {
    set_type(partition, partition_type::fat32);
    partition.sector_count = bytes.u32_at(fat_sectors_at);
    return true;
  }
  if (!bytes.text_at(fat16_name_at, "FAT16")) return false;
  set_type(partition, partition_type::fat16);
  set_count_if_unknown(partition, bytes.u32_at(fat_sectors_at));
  return true;
}

bool recognise(partition_info& partition, byte_view bytes) {
  if (bytes.text_at(boot_sector::oem_id_at, "EXFAT   ")) {
    set_type(partition, partition_type::ntfs);
    const uint8_t power = bytes.u8_at(exfat_sector_power_at);
    set_sector_size(partition, power <= largest_power ? 1U << power : 0);
    set_count_if_unknown(partition, bytes.u64_at(exfat_sectors_at));
    return true;
  }
  if (boot_sector::is_ntfs(bytes) || bytes.text_at(boot_sector::oem_id_at, "-FVE-FS-")) {
    set_type(partition, partition_type::ntfs);
    set_sector_size(partition, bytes.u16_at(boot_sector::bytes_per_sector_at));
    set_count_if_unknown(partition, bytes.u64_at(ntfs_sectors_at));
    return true;
  }
  if (probe_fat(partition, bytes) || probe_ext(partition, bytes)) return true;
  const byte_view oem_id = bytes.clip(boot_sector::oem_id_at, boot_sector::oem_id_bytes);
  return oem_id.all_zero() && probe_hfs(partition, bytes);
}

}  // namespace

bool has_ext_mark(byte_view bytes) { return bytes.u16_at(ext_mark_at) == ext_mark; }

bool probe_filesystem(partition_info& partition, byte_view bytes) {
  if (bytes.size() < boot_sector::bytes || !recognise(partition, bytes)) return false;
  partition.recognised = true;
  return true;
}

}  // namespace ovrik
