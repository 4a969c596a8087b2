// Fuzz entry of the volume reader: the input is a volume, from its boot sector on, of which the
// hive is asked for.

#include "../tests/support/memory_disk.h"
#include "sources/ntfs/ntfs_data.h"
#include "sources/ntfs/ntfs_file.h"
#include "sources/ntfs/ntfs_path.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 0x40000) return 0;
  const auto volume = std::make_shared<ovrik::ntfs_volume>(
      std::make_unique<test_support::memory_disk>(std::vector<uint8_t>(data, data + size)), 0);
  if (!volume->mount()) return 0;
  ovrik::diagnostics_log log;
  uint64_t inode = 0;
  lookup_path(*volume, "\\windows\\system32\\config\\system", inode, log);
  const auto file = open_file_data(volume, inode, log);
  uni::memory_block bytes;
  if (file != nullptr) read_whole_data(*file, bytes);
  return 0;
}
