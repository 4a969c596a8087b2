#include "base/adler32.h"

namespace ovrik {

uint32_t adler32(byte_view bytes) {
  constexpr uint32_t modulus = 65521;
  constexpr size_t safe_run = 5552;  // the most bytes that 32 bits take between two divisions
  uint32_t sum = 1;
  uint32_t sum_of_sums = 0;
  for (size_t at = 0; at < bytes.size(); at += safe_run) {
    const byte_view run = bytes.clip(at, safe_run);
    for (size_t i = 0; i < run.size(); ++i) {
      sum += run.u8_at(i);
      sum_of_sums += sum;
    }
    sum %= modulus;
    sum_of_sums %= modulus;
  }
  return sum_of_sums << 16 | sum;
}

}  // namespace ovrik
