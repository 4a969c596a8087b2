#include "sources/ntfs/ntfs_runs.h"

#include <algorithm>

namespace ovrik {

namespace {

constexpr uint64_t most_clusters = uint64_t{1} << 36;  // more than any volume has

// The header byte of a run: how many bytes its cluster count (low half) and its offset have.
constexpr uint32_t count_bytes_mask = 0x0F;
constexpr uint32_t offset_bytes_shift = 4;

/// The little-endian number in a field of up to 15 bytes; bytes behind the eighth are ignored.
uint64_t field_value(byte_view field) {
  uint64_t value = 0;
  for (size_t i = std::min<size_t>(field.size(), 8); i > 0; --i) {
    value = value << 8 | field.u8_at(i - 1);
  }
  return value;
}

/// The signed number in a field: the top bit of its highest byte is the sign.
uint64_t signed_field_value(byte_view field) {
  const uint64_t value = field_value(field);
  if (field.empty() || field.size() >= 8) return value;
  const bool negative = (field.u8_at(field.size() - 1) & 0x80) != 0;
  return negative ? value | ~uint64_t{0} << (8 * field.size()) : value;
}

}  // namespace

void decode_run_list(cluster_extents& extents, byte_view runs, uint64_t first_vcn, size_t most) {
  // The VCN of a piece is only used to sort it among the others; `place_pieces` checks it when all
  // of them are there.
  uint64_t vcn = std::min(first_vcn, most_clusters / 2);
  uint64_t lcn = 0;
  for (uint64_t at = 0; runs.u8_at(at) != 0 && extents.size() < most;) {
    const uint32_t count_bytes = runs.u8_at(at) & count_bytes_mask;
    const uint32_t offset_bytes = runs.u8_at(at) >> offset_bytes_shift;
    if (!runs.has(at, 1 + count_bytes + offset_bytes)) return;
    const uint64_t count = field_value(runs.clip(at + 1, count_bytes));
    const uint64_t delta = signed_field_value(runs.clip(at + 1 + count_bytes, offset_bytes));
    const bool first = at == 0;
    lcn += delta;
    const bool sparse = delta == 0 && !(first && offset_bytes != 0);
    if (count >= most_clusters || vcn >= most_clusters - count) return;
    if (!sparse && lcn >= most_clusters - count) return;
    if (count != 0) extents.push_back({sparse ? 0 : lcn, vcn, count, sparse});
    vcn += count;
    at += 1 + count_bytes + offset_bytes;
  }
}

void place_pieces(cluster_extents& extents, uint64_t clusters) {
  std::stable_sort(
      extents.begin(), extents.end(),
      [](const cluster_extent& left, const cluster_extent& right) { return left.vcn < right.vcn; });
  uint64_t end = 0;
  bool overlap = false;
  for (const cluster_extent& extent : extents) {
    overlap = overlap || extent.vcn < end;
    end = extent.vcn + extent.clusters;
  }
  if (!overlap && end <= clusters) return;
  uint64_t vcn = 0;
  for (cluster_extent& extent : extents) {
    extent.vcn = vcn;
    vcn += extent.clusters;
  }
}

uint64_t end_vcn(const cluster_extents& extents) {
  return extents.empty() ? 0 : extents.back().vcn + extents.back().clusters;
}

}  // namespace ovrik
