#include "shim/shim_detect.h"

#include "shim/shim_layouts.h"

namespace ovrik {

namespace {

enum class outcome { recognised, refused, undecided };

/// Slots and arrays, which begin with a magic. The magic of slots is enough; arrays with the same
/// magic are told apart by their first entry.
outcome detect_by_magic(byte_view data, detected_shim& found) {
  const uint32_t magic = data.u32_at(0);
  bool magic_known = false;
  for (const shim_layout_row& row : shim_layout_rows()) {
    if (row.magic == 0 || row.magic != magic) continue;
    magic_known = true;
    if (row.family == shim_family::array && !is_array_entry(data.from(row.header_bytes), row)) {
      continue;
    }
    found = {row.layout, data.u32_at(row.count_at)};
    return outcome::recognised;
  }
  return magic_known ? outcome::refused : outcome::undecided;
}

/// The header length of a chain that states a length of 0: where the first entry's signature tells
/// it to be. 0 if it stands nowhere.
uint32_t header_bytes_by_signature(byte_view data) {
  constexpr uint32_t searched_bytes = 256;
  for (const shim_layout_row& row : shim_layout_rows()) {
    if (row.is_guessed_before_search && has_signature_mark(data, row.header_bytes)) {
      return row.header_bytes;
    }
  }
  for (uint32_t at = 0; at + 2 < searched_bytes; ++at) {
    if (has_signature_mark(data, at)) return at;
  }
  return 0;
}

/// Chains whose header begins with its own length.
outcome detect_by_header_length(byte_view data, detected_shim& found) {
  constexpr uint32_t least_bytes = 12;
  constexpr uint32_t longest_header = 512;
  const uint32_t stated = data.u32_at(0);
  const bool negative = stated >> 31 != 0;  // as the signed number that it is taken for
  if (data.size() < least_bytes ||
      (!negative && (stated > data.size() || stated > longest_header))) {
    return outcome::undecided;
  }
  if (!negative && uint64_t{stated} + 4 > data.size() && !has_signature_mark(data, stated)) {
    return outcome::undecided;
  }
  const uint32_t header_bytes = stated != 0 ? stated : header_bytes_by_signature(data);
  if (header_bytes == 0) return outcome::refused;
  for (const shim_layout_row& row : shim_layout_rows()) {
    if (row.family != shim_family::chain || row.header_bytes != header_bytes) continue;
    if (!is_chain_entry(data.from(header_bytes), row, 0)) return outcome::refused;
    found = {row.layout, 0};
    return outcome::recognised;
  }
  return outcome::refused;
}

/// Chains without a header.
bool detect_bare_entries(byte_view data, detected_shim& found) {
  for (const shim_layout_row& row : shim_layout_rows()) {
    if (row.family != shim_family::chain || row.header_bytes != 0) continue;
    if (!is_chain_entry(data, row, 0)) continue;
    found = {row.layout, 0};
    return true;
  }
  return false;
}

}  // namespace

bool detect_shim_layout(byte_view data, detected_shim& found) {
  outcome decided = detect_by_magic(data, found);
  if (decided == outcome::undecided) decided = detect_by_header_length(data, found);
  if (decided == outcome::undecided) return detect_bare_entries(data, found);
  return decided == outcome::recognised;
}

}  // namespace ovrik
