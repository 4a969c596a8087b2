// Fuzz entry of the run lists: two pieces of one attribute.

#include <cstdlib>

#include "sources/ntfs/ntfs_runs.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 0x10000) return 0;
  const ovrik::byte_view input(data, size);
  const uint64_t first_vcn = input.u64_at(0);
  ovrik::cluster_extents extents;
  decode_run_list(extents, input.from(8), first_vcn, size / 4);
  decode_run_list(extents, input.from(8 + size / 2), 0, size / 2);
  if (extents.size() > size / 2) std::abort();
  place_pieces(extents, size);
  uint64_t vcn = 0;
  for (const ovrik::cluster_extent& extent : extents) {
    if (extent.vcn < vcn || (extent.sparse && extent.lcn != 0)) std::abort();
    if (extent.lcn + extent.clusters < extent.lcn) std::abort();
    vcn = extent.vcn + extent.clusters;
  }
  if (end_vcn(extents) != vcn) std::abort();
  return 0;
}
