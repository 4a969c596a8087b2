// Fuzz entry of the decompression of NTFS files: one unit, of which some bytes are wanted.

#include <cstdlib>
#include <vector>

#include "sources/ntfs/lznt1.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 0x10000) return 0;
  const ovrik::byte_view input(data, size);
  const uint64_t wanted = input.u32_at(0) % 0x20000;
  std::vector<uint8_t> out(3, 0x5A);
  decompress_unit(out, input.from(4), wanted);
  if (out.size() < 3 || out.size() - 3 > wanted || out[2] != 0x5A) std::abort();
  out.clear();
  decompress_chunks(out, input.from(4), wanted);
  if (out.size() > wanted) std::abort();
  return 0;
}
