#include "sources/ntfs/lznt1.h"

#include <algorithm>

namespace ovrik {

namespace {

constexpr uint32_t chunk_bytes = 4096;
constexpr uint32_t chunk_header_bytes = 2;
constexpr uint16_t compressed_bit = 0x8000;
constexpr uint16_t chunk_length_mask = 0x0FFF;
constexpr uint16_t raw_chunk_mask = compressed_bit | chunk_length_mask;  // bits between are a mark
constexpr uint32_t shortest_kept_area = 9;  // a chunk below this length starts on a clean area

/// Decodes the tokens of one compressed chunk into `area`. False: a copy starts in front of it.
bool decode_chunk(std::vector<uint8_t>& area, byte_view chunk) {
  uint64_t in = 0;
  uint32_t out = 0;
  while (in < chunk.size() && out < chunk_bytes) {
    const uint32_t flags = chunk.u8_at(in++);
    for (uint32_t bit = 0; bit < 8 && in < chunk.size() && out < chunk_bytes; ++bit) {
      if ((flags >> bit & 1) == 0) {
        area[out++] = chunk.u8_at(in++);
        continue;
      }
      // The further the output has come, the more bits of a token are its distance.
      uint32_t length_bits = 12;
      while (out > 16 && length_bits > 4 && out - 1 >= uint32_t{1} << (16 - length_bits)) {
        --length_bits;
      }
      const uint32_t token = chunk.u16_at(in);
      in += 2;
      const uint32_t distance = (token >> length_bits) + 1;
      const uint32_t length = (token & ((1U << length_bits) - 1)) + 3;
      if (distance > out) return false;
      for (uint32_t i = 0; i < length && out < chunk_bytes; ++i, ++out) {
        area[out] = area[out - distance];
      }
    }
  }
  return true;
}

bool ends_in_zeros(byte_view unit) {
  const byte_view tail = unit.from(unit.size() - std::min<size_t>(unit.size(), chunk_bytes));
  return std::all_of(tail.data(), tail.data() + tail.size(), [](uint8_t b) { return b == 0; });
}

void append(std::vector<uint8_t>& out, const uint8_t* bytes, uint64_t count) {
  out.insert(out.end(), bytes, bytes + count);
}

}  // namespace

bool decompress_unit(std::vector<uint8_t>& out, byte_view unit, uint64_t wanted) {
  const size_t begin = out.size();
  std::vector<uint8_t> area(chunk_bytes);
  for (uint64_t at = 0; wanted != 0 && unit.has(at, chunk_header_bytes);) {
    const uint16_t header = unit.u16_at(at);
    const uint32_t length = (header & chunk_length_mask) + 1U;
    const uint64_t piece = std::min<uint64_t>(wanted, chunk_bytes);
    const byte_view body = unit.clip(at + chunk_header_bytes, length);
    if ((header & compressed_bit) == 0 && (header & chunk_length_mask) == 0) {
      at = (at / chunk_bytes + 1) * chunk_bytes;  // padding
      continue;
    }
    if (length < shortest_kept_area) std::fill(area.begin(), area.end(), uint8_t{0});
    if ((header & compressed_bit) != 0 && decode_chunk(area, body)) {
      append(out, area.data(), piece);
    } else if ((header & raw_chunk_mask) == chunk_length_mask) {
      append(out, body.data(), std::min<uint64_t>(piece, body.size()));
    } else {
      out.resize(begin);
      if (ends_in_zeros(unit)) return false;
      append(out, unit.data(), std::min<uint64_t>(unit.size(), wanted));
      return true;
    }
    wanted -= piece;
    at += chunk_header_bytes + length;
  }
  return out.size() != begin;
}

}  // namespace ovrik
