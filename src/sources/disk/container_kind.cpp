#include "sources/disk/container_kind.h"

#include <string_view>
#include <vector>

#include "sources/host/fileio.h"

namespace ovrik {

namespace {

using namespace std::string_view_literals;

struct signature {
  size_t at;
  std::string_view bytes;
  container_kind kind;
};

// In the order in which they are compared.
constexpr signature signatures[] = {
    {0, "KDMV"sv, container_kind::vmdk},
    {0, "COWD"sv, container_kind::vmdk_esx},
    {0, "\xBE\xBA\xFE\xCA\0\0\0\0"sv, container_kind::vmdk_esx},
    {0, "# Disk DescriptorFile"sv, container_kind::vmdk_descriptor},
    {64, "\x7F\x10\xDA\xBE"sv, container_kind::vdi},
    {0, "QFI\xFB"sv, container_kind::qcow},
    {0, "conectix"sv, container_kind::vhd},
    {0, "vhdxfile"sv, container_kind::vhdx},
    {0, "EVF\x09\x0D\x0A\xFF\0"sv, container_kind::ewf},
    {0, "LVF\x09\x0D\x0A\xFF\0"sv, container_kind::ewf},
    {0, "EVF2\x0D\x0A\x81\0"sv, container_kind::ewf},
    {0, "LEF2\x0D\x0A\x81\0"sv, container_kind::ewf},
    {0, "AFF10\x0D\x0A\0"sv, container_kind::aff},
    {0, "LUKS\xBA\xBE"sv, container_kind::luks},
    {3, "-FVE-FS-"sv, container_kind::bitlocker},
    // The identifier of a volume on a removable disk, which begins like FAT.
    {424, "\x3B\xD6\x67\x49\x29\x2E\xD8\x4A\x83\x99\xF6\xA3\x39\xE3\xD0\x01"sv,
     container_kind::bitlocker},
    {3, "EXFAT   "sv, container_kind::exfat},
    {3, "ReFS\0\0\0\0"sv, container_kind::refs},
};

// The header of a sparse extent (VMDK SparseExtentHeader).
constexpr size_t flags_at = 8;  // u32
constexpr uint32_t compressed_flag = 0x10000;
constexpr size_t descriptor_at = 28;       // u64, sectors
constexpr size_t descriptor_size_at = 36;  // u64, sectors
constexpr uint64_t sector_bytes = 512;

container_kind kind_of_extent(byte_view start) {
  if ((start.u32_at(flags_at) & compressed_flag) != 0) return container_kind::vmdk_compressed;
  // The room of a descriptor may be there and be empty.
  const bool is_near = start.u64_at(descriptor_at) == 1 && start.has(sector_bytes, 1);
  const bool is_empty = is_near && start.u8_at(sector_bytes) == 0;
  return is_empty || start.u64_at(descriptor_size_at) == 0 ? container_kind::vmdk_extent
                                                           : container_kind::vmdk;
}

}  // namespace

container_kind kind_of_container(byte_view start) {
  for (const signature& row : signatures) {
    if (!start.text_at(row.at, row.bytes)) continue;
    return row.kind == container_kind::vmdk ? kind_of_extent(start) : row.kind;
  }
  return container_kind::none;
}

container_kind kind_of_container(RAW_DISK_IO& disk, uint64_t offset) {
  std::vector<uint8_t> start(container_start_bytes);
  uint32_t size = container_start_bytes;
  const bool read = disk.read(start.data(), size, offset);
  start.resize(read ? size : 0);
  return kind_of_container(byte_view(start));
}

container_kind kind_of_container(const std::string& path) {
  std::vector<uint8_t> start;
  uni::read_whole(start, path, container_start_bytes);
  return kind_of_container(byte_view(start));
}

const char* container_name(container_kind kind) {
  switch (kind) {
    case container_kind::none:
      return "";
    case container_kind::vmdk:
    case container_kind::vmdk_extent:
    case container_kind::vmdk_descriptor:
    case container_kind::vmdk_esx:
      return "VMDK";
    case container_kind::vmdk_compressed:
      return "streamOptimized VMDK";
    case container_kind::vdi:
      return "VDI";
    case container_kind::qcow:
      return "qcow2";
    case container_kind::vhd:
      return "VHD";
    case container_kind::vhdx:
      return "VHDX";
    case container_kind::ewf:
      return "EWF (E01)";
    case container_kind::aff:
      return "AFF";
    case container_kind::luks:
      return "LUKS";
    case container_kind::bitlocker:
      return "BitLocker";
    case container_kind::exfat:
      return "exFAT";
    case container_kind::refs:
      return "ReFS";
  }
  return "";
}

}  // namespace ovrik
