// Fuzz entry of directory indexes: the input stands in the blocks of one, after a first part that
// is its root.

#include <cstring>

#include "../tests/support/memory_disk.h"
#include "sources/ntfs/ntfs_directory.h"

namespace {

constexpr size_t record_bytes = 1024;
constexpr size_t blocks_at = 8 * record_bytes;
constexpr size_t most_blocks_bytes = 0x8000;
constexpr uint8_t index_name[] = {'$', 0, 'I', 0, '3', 0, '0', 0};

void put(std::vector<uint8_t>& disk, size_t at, std::initializer_list<uint8_t> bytes) {
  std::copy(bytes.begin(), bytes.end(), disk.begin() + static_cast<std::ptrdiff_t>(at));
}

/// A record whose only attribute has its runs or content 72 bytes behind its start.
void put_record(std::vector<uint8_t>& disk, size_t at, uint8_t type, bool non_resident) {
  put(disk, at, {'F', 'I', 'L', 'E', 48, 0, 1});
  put(disk, at + 20, {56});
  put(disk, at + 29, {4});
  put(disk, at + 56, {type, 0, 0, 0, 80, 2, 0, 0, non_resident, 4, 64, 0});  // 592 bytes long
  if (non_resident) put(disk, at + 56 + 32, {72});
  if (!non_resident) put(disk, at + 56 + 16, {0, 2, 0, 0, 72});
  if (type == 0x80) put(disk, at + 56 + 9, {0});
  if (type != 0x80) std::memcpy(&disk[at + 56 + 64], index_name, sizeof index_name);
  put(disk, at + 56 + 592, {0xFF, 0xFF, 0xFF, 0xFF});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > most_blocks_bytes) return 0;
  std::vector<uint8_t> disk(blocks_at + most_blocks_bytes);
  put(disk, 3, {'N', 'T', 'F', 'S', ' ', ' ', ' ', ' ', 0, 2, 2});  // clusters of 1024
  put(disk, 48, {1});
  put(disk, 64, {0xF6});
  put_record(disk, record_bytes, 0x80, true);
  put(disk, record_bytes + 56 + 72, {0x11, 3, 1});  // the MFT: 3 clusters from cluster 1 on
  put_record(disk, 2 * record_bytes, 0xA0, true);
  put(disk, 2 * record_bytes + 56 + 56, {1});  // initialized
  put(disk, 2 * record_bytes + 56 + 72, {0x11, 13, 8, 0x11, 19, 13});
  put_record(disk, 3 * record_bytes, 0x90, false);
  std::copy_n(data, std::min<size_t>(size, 512), &disk[3 * record_bytes + 56 + 72]);
  std::copy_n(data, size, &disk[blocks_at]);
  ovrik::ntfs_volume volume(std::make_unique<test_support::memory_disk>(disk), 0);
  if (!volume.mount()) std::abort();
  for (const uint64_t directory : {uint64_t{1}, uint64_t{2}}) {
    ovrik::directory_index index;
    if (!list_dir_entries(volume, directory, "system", index)) std::abort();
    if (index.children.size() > size / 8 + 1) std::abort();
    if (index.named.size() > index.children.size()) std::abort();
  }
  return 0;
}
