// Fuzz entry of virtual disks: the input is two files of a chain, with the length of the first in
// front of them.

#include <algorithm>
#include <cstdlib>
#include <string>

#include "memory_file.h"
#include "sources/disk/vmdk_chain.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 0x40000) return 0;
  const ovrik::byte_view input(data, size);
  const memory_file first(input.from(4).clip(0, input.u32_at(0)));
  const memory_file second(input.from(4 + uint64_t{input.u32_at(0)}));
  for (const std::vector<std::string>& paths :
       {std::vector<std::string>{first.path()}, {second.path()}, {first.path(), second.path()}}) {
    ovrik::read_faults faults;
    const ovrik::vmdk_chain chain = ovrik::check_vmdk_chain(paths, faults);
    if (chain.files.size() != paths.size() + chain.found_parents.size()) std::abort();
    const auto& disk = chain.disk;
    if (disk == nullptr) continue;
    if (!chain.complete || chain.fault != ovrik::vmdk_fault::none) std::abort();
    if (disk->stored_size() > size) std::abort();
    std::vector<uint8_t> bytes(100000);
    for (const uint64_t offset :
         {uint64_t{0}, uint64_t{1000}, disk->size() / 2, disk->size() - 1}) {
      auto count = static_cast<uint32_t>(bytes.size());
      const bool inside = offset < disk->size();
      if (disk->read(bytes.data(), count, offset) != inside) std::abort();
      if (inside && count != std::min<uint64_t>(bytes.size(), disk->size() - offset)) std::abort();
    }
  }
  return 0;
}
