// Fuzz entry of the partition walk: the input is a disk, asked for its partitions and for a volume.

#include <cstdlib>

#include "../tests/support/memory_disk.h"
#include "sources/disk/partition_types.h"
#include "sources/disk/partitions.h"
#include "sources/disk/volume_choice.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 0x20000) return 0;
  test_support::memory_disk disk(std::vector<uint8_t>(data, data + size));
  ovrik::partition_list list;
  for (const bool guess : {false, true}) {
    find_partitions(disk, list, guess);
    for (const ovrik::partition_info& partition : list) ovrik::partition_type_name(partition.type);
  }
  for (uint64_t offset : {uint64_t{0}, uint64_t{512}, list.empty() ? 0 : list[0].byte_offset()}) {
    const ovrik::volume_choice choice = choose_volume(disk, offset, offset == 512);
    if (!choice.has_volume() && choice.offset != offset) std::abort();
    if (choice.findings.size() > choice.partitions.size()) std::abort();
  }
  return 0;
}
