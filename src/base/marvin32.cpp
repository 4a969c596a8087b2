#include "base/marvin32.h"

#include <bit>

namespace ovrik {

namespace {

struct marvin_state {
  uint32_t low;
  uint32_t high;

  void take(uint32_t word) {
    low += word;
    high ^= low;
    low = std::rotl(low, 20) + high;
    high = std::rotl(high, 9) ^ low;
    low = std::rotl(low, 27) + high;
    high = std::rotl(high, 19);
  }
};

}  // namespace

uint64_t marvin32(byte_view bytes, uint64_t seed) {
  marvin_state state{static_cast<uint32_t>(seed), static_cast<uint32_t>(seed >> 32)};
  const size_t words_end = bytes.size() & ~size_t{3};
  for (size_t at = 0; at < words_end; at += 4) state.take(bytes.u32_at(at));
  // The 0 to 3 bytes that are left, with a bit behind them, then a word of nothing.
  uint32_t last = 0x80;
  for (size_t at = bytes.size(); at > words_end; --at) last = last << 8 | bytes.u8_at(at - 1);
  state.take(last);
  state.take(0);
  return uint64_t{state.high} << 32 | state.low;
}

}  // namespace ovrik
