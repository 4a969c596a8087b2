#include "shim/shim_layouts.h"

#include <algorithm>
#include <iterator>

namespace ovrik {

namespace {

constexpr uint32_t magic_xp = 0xDEADBEEF;
constexpr uint32_t magic_2003_vista = 0xBADC0FFE;
constexpr uint32_t magic_win7 = 0xBADC0FEE;
constexpr uint64_t largest_file_size = 0xFFFFFFFF;

/// The carver looks for caches of Server 2003 and Vista by the magic of
/// Windows 7, with which they do not begin: no page of theirs starts a chunk, and only the lists of
/// a hive lead to their pages.
constexpr shim_layout_row rows[] = {
    {.layout = shim_layout::xp,
     .name = "Windows XP, 32-bit",
     .family = shim_family::slots,
     .has_file_size = true,
     .magic = magic_xp,
     .count_at = 8,
     .header_bytes = 400,
     .entry_bytes = 552,
     .modified_at = 528,
     .update_time_at = 544,
     .file_size_at = 536,
     .mark = carving_mark::entries,
     .carving_magic = magic_xp,
     .carving_time_at = 544},
    {.layout = shim_layout::server2003_x86,
     .name = "Windows Server 2003 and XP 64-bit, 32-bit form",
     .family = shim_family::array,
     .has_file_size = true,
     .magic = magic_2003_vista,
     .count_at = 4,
     .header_bytes = 8,
     .entry_bytes = 24,
     .path_offset_at = 4,
     .offset_width = 4,
     .modified_at = 8,
     .file_size_at = 16,
     .least_file_size = 1025,
     .mark = carving_mark::entries_or_paths,
     .carving_magic = magic_win7,
     .carving_time_at = 8},
    {.layout = shim_layout::server2003_x64,
     .name = "Windows Server 2003 and XP 64-bit, 64-bit form",
     .family = shim_family::array,
     .has_file_size = true,
     .magic = magic_2003_vista,
     .count_at = 4,
     .header_bytes = 8,
     .entry_bytes = 32,
     .zero_at = 4,
     .path_offset_at = 8,
     .offset_width = 8,
     .modified_at = 16,
     .file_size_at = 24,
     .least_file_size = 1024,
     .mark = carving_mark::entries_or_paths,
     .carving_magic = magic_win7,
     .carving_time_at = 16},
    {.layout = shim_layout::vista_x86,
     .name = "Windows Vista and Server 2008, 32-bit",
     .family = shim_family::array,
     .has_flags = true,
     .magic = magic_2003_vista,
     .count_at = 4,
     .header_bytes = 8,
     .entry_bytes = 24,
     .path_offset_at = 4,
     .offset_width = 4,
     .modified_at = 8,
     .flags1_at = 16,
     .flags2_at = 20,
     .flags1_limit = 15,
     .mark = carving_mark::entries_or_paths,
     .carving_magic = magic_win7,
     .carving_time_at = 8},
    {.layout = shim_layout::vista_x64,
     .name = "Windows Vista and Server 2008, 64-bit",
     .family = shim_family::array,
     .has_flags = true,
     .magic = magic_2003_vista,
     .count_at = 4,
     .header_bytes = 8,
     .entry_bytes = 32,
     .zero_at = 4,
     .path_offset_at = 8,
     .offset_width = 8,
     .modified_at = 16,
     .flags1_at = 24,
     .flags2_at = 28,
     .flags1_limit = 15,
     .mark = carving_mark::entries_or_paths,
     .carving_magic = magic_win7,
     .carving_time_at = 16},
    {.layout = shim_layout::win7_x86,
     .name = "Windows 7 and Server 2008 R2, 32-bit",
     .family = shim_family::array,
     .has_flags = true,
     .magic = magic_win7,
     .count_at = 4,
     .header_bytes = 128,
     .entry_bytes = 32,
     .path_offset_at = 4,
     .offset_width = 4,
     .modified_at = 8,
     .flags1_at = 16,
     .flags2_at = 20,
     .data_at = 24,
     .mark = carving_mark::entries_or_paths,
     .carving_magic = magic_win7,
     .carving_time_at = 8},
    {.layout = shim_layout::win7_x64,
     .name = "Windows 7 and Server 2008 R2, 64-bit",
     .family = shim_family::array,
     .has_flags = true,
     .magic = magic_win7,
     .count_at = 4,
     .header_bytes = 128,
     .entry_bytes = 48,
     .zero_at = 4,
     .path_offset_at = 8,
     .offset_width = 8,
     .modified_at = 16,
     .flags1_at = 24,
     .flags2_at = 28,
     .data_at = 32,
     .stale_after_valid = true,
     .mark = carving_mark::entries_or_paths,
     .carving_magic = magic_win7,
     .carving_time_at = 16},
    {.layout = shim_layout::win8,
     .name = "Windows 8 and 8.1",
     .family = shim_family::chain,
     .has_flags = true,
     .header_bytes = 128,
     .modified_at = 10,
     .flags1_at = 2,
     .flags2_at = 6,
     .second_form = true,
     .is_guessed_before_search = true,
     .mark = carving_mark::none},
    {.layout = shim_layout::win10,
     .name = "Windows 10",
     .family = shim_family::chain,
     .header_bytes = 48,
     .modified_at = 0,
     .must_fit = true,
     .length_from_bad_place = true,
     .is_guessed_before_search = true,
     .mark = carving_mark::none},
    {.layout = shim_layout::win10_later,
     .name = "Windows 10, later builds",
     .family = shim_family::chain,
     .header_bytes = 52,
     .modified_at = 0,
     .must_fit = true,
     .length_from_bad_place = true,
     .mark = carving_mark::none},
    {.layout = shim_layout::bare,
     .name = "Windows 8 family, entries without a header",
     .family = shim_family::chain,
     .has_flags = true},
    {.layout = shim_layout::bare_with_package,
     .name = "Windows 8 family, entries without a header, with package data",
     .family = shim_family::chain,
     .flags2_at = 0,
     .has_package = true},
};

/// The tests of a chain entry that all forms share: a path of the length at `path_length_at` may
/// follow in `entry`, which must have `least_bytes` bytes.
bool is_chain_head(byte_view entry, uint32_t signature, uint32_t path_length_at,
                   uint32_t least_bytes) {
  const uint32_t path_length = entry.u16_at(path_length_at);
  return entry.size() >= least_bytes &&
         (signature == 0 || entry.u32_at(chain_entry::signature_at) == signature) &&
         entry.u32_at(chain_entry::data_size_at) != 0 && path_length != 0 &&
         path_length + chain_entry::path_length_at < entry.size();
}

}  // namespace

std::span<const shim_layout_row> shim_layout_rows() { return rows; }

const shim_layout_row& layout_facts(shim_layout layout) {
  static constexpr shim_layout_row no_layout;
  const auto* row =
      std::find_if(std::begin(rows), std::end(rows),
                   [layout](const shim_layout_row& known) { return known.layout == layout; });
  return row == std::end(rows) ? no_layout : *row;
}

uint64_t offset_field(byte_view entry, const shim_layout_row& row, uint32_t at) {
  return row.offset_width == 8 ? entry.u64_at(at) : entry.u32_at(at);
}

bool is_array_entry(byte_view entry, const shim_layout_row& row) {
  if (entry.size() < row.entry_bytes) return false;
  if (row.zero_at != absent && entry.u32_at(row.zero_at) != 0) return false;
  if (offset_field(entry, row, row.path_offset_at) == 0) return false;
  const uint32_t path_length = entry.u16_at(array_entry::path_length_at);
  if (entry.u16_at(array_entry::path_room_at) != path_length + array_entry::terminator_bytes) {
    return false;
  }
  if (row.file_size_at != absent) {
    const uint64_t file_size = entry.u64_at(row.file_size_at);
    if (file_size < row.least_file_size || file_size > largest_file_size) return false;
  }
  return row.flags1_limit == absent || entry.u32_at(row.flags1_at) < row.flags1_limit;
}

bool is_chain_entry(byte_view entry, const shim_layout_row& row, uint32_t signature) {
  if (!is_chain_head(entry, signature, chain_entry::path_length_at, chain_entry::least_bytes)) {
    return false;
  }
  if (row.header_bytes != 0) return true;
  const uint32_t path_length = entry.u16_at(chain_entry::path_length_at);
  const bool has_package = entry.u16_at(chain_entry::path_at + path_length) != 0;
  return has_signature_mark(entry, chain_entry::signature_at) &&
         entry.u32_at(chain_entry::data_size_at) > path_length && has_package == row.has_package;
}

bool is_second_form_entry(byte_view entry, uint32_t signature) {
  return is_chain_head(entry, signature, chain_entry::second_form_path_length_at,
                       chain_entry::second_form_least_bytes);
}

bool has_signature_mark(byte_view bytes, uint64_t offset) {
  return bytes.text_at(offset + 2, "ts");
}

}  // namespace ovrik
