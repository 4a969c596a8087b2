#include "hive/base_block.h"

#include "base/utf16.h"

namespace ovrik {

namespace {

constexpr size_t sequence1_at = 0x04;
constexpr size_t sequence2_at = 0x08;
constexpr size_t time_stamp_at = 0x0C;
constexpr size_t bins_bytes_at = 0x28;
constexpr size_t file_name_at = 0x30;  // UTF-16LE
constexpr size_t file_name_bytes = 64;
constexpr size_t rm_id_at = 0x70;
constexpr size_t rm_id_bytes = 16;
constexpr size_t checksum_at = 0x1FC;

/// The two results that would look like an empty or an erased field are never stored.
uint32_t checksum_of(byte_view bytes) {
  uint32_t sum = 0;
  for (size_t at = 0; at < checksum_at; at += 4) sum ^= bytes.u32_at(at);
  if (sum == 0) return 1;
  return sum == 0xFFFFFFFF ? 0xFFFFFFFE : sum;
}

std::string last_component_of(byte_view field) {
  size_t units = 0;
  while (units < field.size() / 2 && field.u16_at(2 * units) != 0) ++units;
  const std::string path = utf16_text(field.clip(0, 2 * units));
  const size_t separator = path.find_last_of("\\/");
  return separator == std::string::npos ? path : path.substr(separator + 1);
}

}  // namespace

std::optional<base_block> read_base_block(byte_view bytes) {
  if (!bytes.has(0, sealed_base_bytes) || !bytes.text_at(0, "regf") ||
      bytes.u32_at(checksum_at) != checksum_of(bytes)) {
    return std::nullopt;
  }
  base_block block;
  block.sequence1 = bytes.u32_at(sequence1_at);
  block.sequence2 = bytes.u32_at(sequence2_at);
  block.time_stamp = bytes.u64_at(time_stamp_at);
  block.bins_bytes = bytes.u32_at(bins_bytes_at);
  block.name = last_component_of(bytes.clip(file_name_at, file_name_bytes));
  block.rm_id = bytes.clip(rm_id_at, rm_id_bytes);
  return block;
}

}  // namespace ovrik
