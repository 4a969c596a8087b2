// Fuzz entry of the transaction logs: a hive and two logs, whose sizes in sectors stand in front.
// If the first bit of the input is set, checksums and hashes are made right first, so that what
// they cover is reached.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

#include "base/marvin32.h"
#include "hive/hive_logs.h"

namespace {

using ovrik::byte_view;

constexpr size_t sector_bytes = 512;

void put(std::vector<uint8_t>& bytes, size_t at, size_t width, uint64_t value) {
  for (size_t i = 0; i < width; ++i) bytes[at + i] = static_cast<uint8_t>(value >> (8 * i));
}

void seal(std::vector<uint8_t>& file) {
  constexpr uint64_t seed = 0x82EF4D887A4E55C5;
  if (file.size() < sector_bytes) return;
  const byte_view view(file);
  uint32_t sum = 0;
  for (size_t at = 0; at < 0x1FC; at += 4) sum ^= view.u32_at(at);
  put(file, 0x1FC, 4, sum);
  for (size_t at = sector_bytes; at + 0x28 <= file.size(); at += sector_bytes) {
    if (!view.text_at(at, "HvLE")) continue;
    const byte_view entry = view.clip(at, view.u32_at(at + 4));
    put(file, at + 0x18, 8, marvin32(entry.from(0x28), seed));
    put(file, at + 0x20, 8, marvin32(view.clip(at, 0x20), seed));
  }
}

void check(const ovrik::hive_replay& result, size_t hive_size, size_t log_bytes) {
  if (result.size < hive_size || result.size > hive_size + log_bytes) std::abort();
  if (result.clean && (result.changes() || result.base_from)) std::abort();
  size_t put_bytes = 0;
  uint64_t end = 0;
  for (const auto& [offset, bytes] : result.patch().pieces()) {
    if (offset < end || bytes.empty()) std::abort();
    end = offset + bytes.size();
    put_bytes += bytes.size();
  }
  if (put_bytes > log_bytes) std::abort();
}

/// Blocks of any size must come out as the whole does.
void check_blocks(const ovrik::hive_replay& result, const std::vector<uint8_t>& hive) {
  std::vector<uint8_t> whole = hive;
  whole.resize(static_cast<size_t>(result.size));
  std::vector<uint8_t> in_blocks = whole;
  result.apply(0, whole.data(), whole.size());
  for (size_t at = 0; at < in_blocks.size(); at += 1000) {
    std::vector<uint8_t> block(std::min<size_t>(1000, in_blocks.size() - at));
    std::copy_n(in_blocks.begin() + static_cast<ptrdiff_t>(at), block.size(), block.begin());
    result.apply(at, block.data(), block.size());
    std::copy(block.begin(), block.end(), in_blocks.begin() + static_cast<ptrdiff_t>(at));
  }
  if (whole != in_blocks) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const byte_view input(data, size);
  std::array<std::vector<uint8_t>, 3> files;
  size_t at = 1 + files.size();
  for (size_t i = 0; i < files.size(); ++i) {
    const size_t wanted = input.u8_at(1 + i) * sector_bytes;
    files[i] = input.clip(at, wanted).copy();
    files[i].resize(wanted);
    at += wanted;
    if ((input.u8_at(0) & 1) != 0) seal(files[i]);
  }
  const byte_view hive(files[0]), first(files[1]), second(files[2]);
  const ovrik::hive_replay result =
      ovrik::replay_hive_logs(hive, hive.size(), {log_source_of(first), log_source_of(second)});
  check(result, hive.size(), first.size() + second.size());
  check_blocks(result, files[0]);
  return 0;
}
