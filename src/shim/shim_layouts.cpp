#include "shim/shim_layouts.h"

#include <algorithm>

namespace ovrik {

namespace {

constexpr uint32_t magic_2003_vista = 0xBADC0FFE;
constexpr uint32_t magic_win7 = 0xBADC0FEE;
constexpr uint64_t any_size = 0;
constexpr uint64_t largest_file_size = 0xFFFFFFFF;

// clang-format off
constexpr array_layout array_table[] = {
    // layout                     magic             header entry zero    path width time size    flags   data    least     flags1
    {shim_layout::server2003_x86, magic_2003_vista,   8,   24,  absent,  4,   4,    8,   16,     absent, absent, 1025,     absent},
    {shim_layout::server2003_x64, magic_2003_vista,   8,   32,  4,       8,   8,    16,  24,     absent, absent, 1024,     absent},
    {shim_layout::vista_x86,      magic_2003_vista,   8,   24,  absent,  4,   4,    8,   absent, 16,     absent, any_size, 15},
    {shim_layout::vista_x64,      magic_2003_vista,   8,   32,  4,       8,   8,    16,  absent, 24,     absent, any_size, 15},
    {shim_layout::win7_x86,       magic_win7,       128,   32,  absent,  4,   4,    8,   absent, 16,     24,     any_size, absent},
    {shim_layout::win7_x64,       magic_win7,       128,   48,  4,       8,   8,    16,  absent, 24,     32,     any_size, absent},
};

constexpr signed_layout signed_table[] = {
    // layout                        header flags1  flags2  modified
    {shim_layout::bare,              0,     absent, absent, absent},
    {shim_layout::win8,              128,   2,      6,      10},
    {shim_layout::bare_with_package, 0,     absent, 0,      absent},
    {shim_layout::win10,             48,    absent, absent, 0},
    {shim_layout::win10_later,       52,    absent, absent, 0},
};
// clang-format on

}  // namespace

std::span<const array_layout> array_layouts() { return array_table; }

const array_layout& array_layout_of(shim_layout layout) {
  return *std::find_if(std::begin(array_table), std::end(array_table) - 1,
                       [layout](const array_layout& row) { return row.layout == layout; });
}

uint64_t offset_field(byte_view entry, const array_layout& layout, uint32_t at) {
  return layout.offset_width == 8 ? entry.u64_at(at) : entry.u32_at(at);
}

bool is_array_entry(byte_view entry, const array_layout& layout) {
  if (entry.size() < layout.entry_bytes) return false;
  if (layout.zero_at != absent && entry.u32_at(layout.zero_at) != 0) return false;
  if (offset_field(entry, layout, layout.path_offset_at) == 0) return false;
  if (entry.u16_at(2) != entry.u16_at(0) + 2) return false;
  if (layout.file_size_at != absent) {
    const uint64_t file_size = entry.u64_at(layout.file_size_at);
    if (file_size < layout.least_file_size || file_size > largest_file_size) return false;
  }
  return layout.flags1_limit == absent || entry.u32_at(layout.flags_at) < layout.flags1_limit;
}

const signed_layout& signed_layout_of(shim_layout layout) {
  return *std::find_if(std::begin(signed_table), std::end(signed_table) - 1,
                       [layout](const signed_layout& row) { return row.layout == layout; });
}

const signed_layout* signed_layout_by_header(uint32_t header_bytes) {
  const auto* row = std::find_if(std::begin(signed_table), std::end(signed_table),
                                 [header_bytes](const signed_layout& r) {
                                   return r.header_bytes == header_bytes && header_bytes != 0;
                                 });
  return row == std::end(signed_table) ? nullptr : row;
}

bool is_signed_entry(byte_view entry, uint32_t signature, uint32_t path_length_at,
                     uint32_t least_bytes) {
  const uint32_t path_length = entry.u16_at(path_length_at);
  return entry.size() >= least_bytes && (signature == 0 || entry.u32_at(0) == signature) &&
         entry.u32_at(signed_entry::data_size_at) != 0 && path_length != 0 &&
         path_length + signed_entry::path_length_at < entry.size();
}

bool is_bare_entry(byte_view entry, shim_layout& layout) {
  const uint32_t data_size = entry.u32_at(signed_entry::data_size_at);
  const uint32_t path_length = entry.u16_at(signed_entry::path_length_at);
  if (!has_signature_mark(entry, 0) ||
      !is_signed_entry(entry, 0, signed_entry::path_length_at, signed_entry::least_bytes) ||
      data_size <= path_length) {
    return false;
  }
  const bool package = entry.u16_at(path_length + signed_entry::path_at) != 0;
  layout = package ? shim_layout::bare_with_package : shim_layout::bare;
  return true;
}

bool has_signature_mark(byte_view bytes, uint64_t offset) {
  return bytes.text_at(offset + 2, "ts");
}

}  // namespace ovrik
