#include "shim/shim_detect.h"

#include "shim/shim_layouts.h"

namespace ovrik {

namespace {

enum class outcome { recognised, refused, undecided };

outcome detect_array_layout(byte_view data, detected_shim& found) {
  const uint32_t magic = data.u32_at(0);
  bool magic_known = false;
  for (const array_layout& layout : array_layouts()) {
    if (magic != layout.magic) continue;
    magic_known = true;
    if (!is_array_entry(data.from(layout.header_bytes), layout)) continue;
    found = {layout.layout, data.u32_at(4), layout.header_bytes, layout.entry_bytes, 0};
    return outcome::recognised;
  }
  return magic_known ? outcome::refused : outcome::undecided;
}

/// The header length of a cache that states a length of 0: where the first entry's signature tells
/// it to be. 0 if it stands nowhere.
uint32_t header_bytes_by_signature(byte_view data) {
  for (const uint32_t header_bytes : {128U, 48U}) {
    if (has_signature_mark(data, header_bytes)) return header_bytes;
  }
  for (uint32_t at = 2; at < 256; ++at) {
    if (has_signature_mark(data, at - 2)) return at - 2;
  }
  return 0;
}

/// Layouts 10, 13 and 14: a header that begins with its own length.
outcome detect_by_header_length(byte_view data, detected_shim& found) {
  constexpr uint32_t longest_header = 512;
  const uint32_t stated = data.u32_at(0);
  const bool negative = stated >> 31 != 0;  // as the signed number that it is taken for
  if (data.size() < 12 || (!negative && (stated > data.size() || stated > longest_header))) {
    return outcome::undecided;
  }
  if (!negative && uint64_t{stated} + 4 > data.size() && !has_signature_mark(data, stated)) {
    return outcome::undecided;
  }
  const uint32_t header_bytes = stated != 0 ? stated : header_bytes_by_signature(data);
  const signed_layout* layout = signed_layout_by_header(header_bytes);
  if (layout == nullptr) return outcome::refused;
  const byte_view entry = data.from(header_bytes);
  if (!is_signed_entry(entry, 0, signed_entry::path_length_at, signed_entry::least_bytes)) {
    return outcome::refused;
  }
  found = {layout->layout, 0, header_bytes, signed_entry::least_bytes, entry.u32_at(0)};
  return outcome::recognised;
}

bool detect_bare_entries(byte_view data, detected_shim& found) {
  shim_layout layout = shim_layout::none;
  if (!is_bare_entry(data, layout)) return false;
  const uint32_t signature = layout == shim_layout::bare_with_package ? data.u32_at(0) : 0;
  found = {layout, 0, 0, signed_entry::least_bytes, signature};
  return true;
}

}  // namespace

bool detect_shim_layout(byte_view data, detected_shim& found) {
  if (data.u32_at(0) == xp_cache::magic) {
    found = {shim_layout::xp, data.u32_at(xp_cache::count_at), xp_cache::header_bytes,
             xp_cache::entry_bytes, 0};
    return true;
  }
  outcome decided = detect_array_layout(data, found);
  if (decided == outcome::undecided) decided = detect_by_header_length(data, found);
  if (decided == outcome::undecided) return detect_bare_entries(data, found);
  return decided == outcome::recognised;
}

}  // namespace ovrik
