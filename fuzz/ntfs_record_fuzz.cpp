// Fuzz entry of the attribute walk: the input stands behind the first record of a sound MFT and is
// both the other records and the clusters that these name.

#include <cstring>

#include "../tests/support/memory_disk.h"
#include "sources/ntfs/ntfs_data.h"
#include "sources/ntfs/ntfs_directory.h"
#include "sources/ntfs/ntfs_file.h"

namespace {

constexpr size_t record_bytes = 1024;
constexpr uint8_t boot[] = "\xEB\x52\x90NTFS    \0\x02\x02";  // sectors of 512, clusters of 1024
constexpr uint8_t record[] = "FILE\x30\0\x01";
constexpr uint8_t mft_data[] = {0x80, 0, 0, 0, 72, 0, 0, 0, 1, 0, 64};
constexpr uint8_t mft_runs[] = {0x11, 0x40, 0x01};  // 64 clusters from cluster 1 on

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 64 * record_bytes) return 0;
  std::vector<uint8_t> disk(65 * record_bytes);
  std::memcpy(&disk[0], boot, sizeof boot - 1);
  disk[48] = 1;     // cluster of the MFT
  disk[64] = 0xF6;  // records of 1 KiB
  uint8_t* const first = &disk[record_bytes];
  std::memcpy(first, record, sizeof record - 1);
  first[20] = 56;  // first attribute
  first[29] = 4;   // 1 KiB
  std::memcpy(first + 56, mft_data, sizeof mft_data);
  first[56 + 32] = 64;
  std::memcpy(first + 56 + 64, mft_runs, sizeof mft_runs);
  std::memset(first + 56 + 72, 0xFF, 4);
  disk.insert(disk.begin() + 2 * record_bytes, data, data + size);
  disk.resize(65 * record_bytes);

  const auto mounted =
      std::make_shared<ovrik::ntfs_volume>(std::make_unique<test_support::memory_disk>(disk), 0);
  ovrik::ntfs_volume& volume = *mounted;
  if (!volume.mount()) std::abort();
  ovrik::diagnostics_log log;
  for (uint64_t entry = 1; entry < 5; ++entry) {
    ovrik::directory_index index;
    list_dir_entries(volume, entry, "a", index);
    ovrik::ntfs_record_bytes bytes;
    if (!volume.read_mft_record(entry, bytes)) continue;
    visit_record_names(volume, entry, ovrik::byte_view(bytes), [](const ovrik::ntfs_name&) {});
    const auto file = open_file_data(mounted, entry, log);
    uni::memory_block content;
    if (file != nullptr) read_whole_data(*file, content);
  }
  return 0;
}
