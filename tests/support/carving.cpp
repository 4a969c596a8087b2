#include "support/carving.h"

#include <algorithm>
#include <string>

#include "support/cache_builder.h"

namespace test_support {

bytes padded(bytes content, size_t size) {
  content.resize(std::max(content.size(), size));
  return content;
}

bytes cache_of_segments(int layout, size_t segments) {
  const size_t wanted = segments * segment_bytes;
  cache_builder cache(layout);
  const auto program = [](size_t number, size_t fill) {
    const std::string name = "\\??\\C:\\Windows\\System32\\program-" +
                             std::to_string(1000 + number) + std::string(fill, 'x') + ".exe";
    return std::u16string(name.begin(), name.end());
  };
  if (layout == 1) {
    // Its entries do not fall where they are looked for, but these letters read as times there.
    for (int i = 0; i < 90; ++i) cache.entry({.path = std::u16string(250, u'\u0430')});
    return cache.bytes();
  }
  const size_t header = cache.bytes().size();
  const size_t each = cache_builder(layout).entry({.path = program(0, 0)}).bytes().size() - header;
  const size_t count = (wanted - header) / each;
  for (size_t i = 0; i + 1 < count; ++i) cache.entry({.path = program(i, 0)});
  cache.entry({.path = program(count, (wanted - header - count * each) / 2)});
  return cache.bytes();
}

bytes segment_bins(const bytes& value, uint32_t bin_offset) {
  bytes bins;
  for (size_t at = 0; at < value.size(); at += segment_bytes) {
    bytes bin = as_bytes("hbin");
    append_u32(bin, bin_offset + static_cast<uint32_t>(bins.size()));
    append_u32(bin, 4 * page_bytes);
    bin.resize(0x20);
    append_u32(bin, 0 - uint32_t{16352});
    const auto first = value.begin() + static_cast<std::ptrdiff_t>(at);
    bin.insert(bin.end(), first,
               first + static_cast<std::ptrdiff_t>(std::min(segment_bytes, value.size() - at)));
    append(bins, padded(bin, 4 * page_bytes));
  }
  return bins;
}

bytes strewn(const bytes& value) {
  uint64_t state = 1;
  bytes noise(5 * page_bytes);
  for (uint8_t& byte : noise) {
    state = state * 6364136223846793005 + 1442695040888963407;
    byte = static_cast<uint8_t>(state >> 56);
  }
  bytes source = noise;
  append(source, segment_bins(value));
  source.resize(source.size() + 3 * page_bytes);
  append(source, noise);
  return source;
}

}  // namespace test_support
