// Containers and volumes that no hive can be read out of as they are, told by their signatures.
#pragma once

#include <cstdint>
#include <string>

#include "base/byte_view.h"
#include "sources/disk/raw_disk_io.h"

namespace ovrik {

enum class container_kind {
  none,             ///< nothing of the following
  vmdk,             ///< a sparse extent of VMDK with its descriptor inside
  vmdk_compressed,  ///< one whose grains are compressed (streamOptimized)
  vmdk_extent,      ///< one without a descriptor: a part of a disk in several files
  vmdk_descriptor,  ///< the descriptor of a VMDK alone: its extents are other files
  vmdk_esx,         ///< a sparse extent of another form (COWD, SE sparse)
  vdi,
  qcow,
  vhd,  ///< dynamic or differencing; a fixed one begins like the disk that it is
  vhdx,
  ewf,
  aff,
  luks,
  bitlocker,
  exfat,
  refs,
};

/// Up to here a file or volume must be read to be told.
constexpr uint32_t container_start_bytes = 1024;

/// Tells a container by its first bytes.
container_kind kind_of_container(byte_view start);

/// Tells what begins at byte `offset` of `disk`.
container_kind kind_of_container(RAW_DISK_IO& disk, uint64_t offset);

/// Tells what the file at `path` (UTF-8) is. Nothing is said of one that does not open.
container_kind kind_of_container(const std::string& path);

/// The name of the format as its users know it. Empty: `none`.
const char* container_name(container_kind kind);

}  // namespace ovrik
