#include "sources/ntfs/lznt1.h"

#include <algorithm>

namespace ovrik {

namespace {

constexpr uint32_t chunk_bytes = 4096;  // what a chunk is decompressed to

// The header of a chunk.
constexpr uint32_t chunk_header_bytes = 2;
constexpr uint16_t compressed_bit = 0x8000;
constexpr uint16_t chunk_length_mask = 0x0FFF;  // bytes behind the header, less 1
constexpr uint16_t raw_chunk_mask =
    compressed_bit | chunk_length_mask;  // not the signature between

// A copy token: how far back it copies from, less 1, above how many bytes it copies, less 3.
constexpr uint32_t token_bytes = 2;
constexpr uint32_t token_bits = 16;
constexpr uint32_t most_length_bits = 12;
constexpr uint32_t least_length_bits = 4;
constexpr uint32_t shortest_copy = 3;

constexpr uint32_t shortest_kept_area = 9;  // a chunk below this length starts on a clean area

/// The bits of a token's length. The more bytes are `done` of the chunk, the more of its bits are
/// the distance.
uint32_t length_bits_at(uint32_t done) {
  uint32_t bits = most_length_bits;
  while (done != 0 && bits > least_length_bits && done - 1 >= uint32_t{1} << (token_bits - bits)) {
    --bits;
  }
  return bits;
}

/// Decodes one compressed chunk into `area`: a byte of flags says of each of the next eight
/// elements whether it is a copy token or a plain byte. False: a copy starts in front of the chunk.
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
      const uint32_t length_bits = length_bits_at(out);
      const uint32_t token = chunk.u16_at(in);
      in += token_bytes;
      const uint32_t distance = (token >> length_bits) + 1;
      const uint32_t length = (token & ((1U << length_bits) - 1)) + shortest_copy;
      if (distance > out) return false;
      for (uint32_t i = 0; i < length && out < chunk_bytes; ++i, ++out) {
        area[out] = area[out - distance];
      }
    }
  }
  return true;
}

/// True if the last 4096 bytes are zeros; fewer, if there are no more.
bool ends_in_zeros(byte_view unit) {
  return unit.from(unit.size() - std::min<size_t>(unit.size(), chunk_bytes)).all_zero();
}

/// Appends at most `wanted` of the bytes.
void append(std::vector<uint8_t>& out, byte_view bytes, uint64_t wanted) {
  const byte_view piece = bytes.clip(0, wanted);
  out.insert(out.end(), piece.begin(), piece.end());
}

/// What becomes of a chunk that the end of the bytes cuts.
enum class cut_chunk { taken, left_out };

/// Appends at most `wanted` bytes of the chunks. False: one of them is not valid; what came in
/// front of it stands.
bool append_chunks(std::vector<uint8_t>& out, byte_view unit, uint64_t wanted, cut_chunk cut) {
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
    if (body.size() != length && cut == cut_chunk::left_out) return true;
    if (length < shortest_kept_area) std::fill(area.begin(), area.end(), uint8_t{0});
    if ((header & compressed_bit) != 0 && decode_chunk(area, body)) {
      append(out, byte_view(area), piece);
    } else if ((header & raw_chunk_mask) == chunk_length_mask) {
      append(out, body, piece);
    } else {
      return false;
    }
    wanted -= piece;
    at += chunk_header_bytes + length;
  }
  return true;
}

}  // namespace

bool decompress_unit(std::vector<uint8_t>& out, byte_view unit, uint64_t wanted) {
  const size_t begin = out.size();
  if (append_chunks(out, unit, wanted, cut_chunk::taken)) return out.size() != begin;
  out.resize(begin);
  if (ends_in_zeros(unit)) return false;
  append(out, unit, wanted);
  return true;
}

void decompress_chunks(std::vector<uint8_t>& out, byte_view start, uint64_t wanted) {
  append_chunks(out, start, wanted, cut_chunk::left_out);
}

}  // namespace ovrik
