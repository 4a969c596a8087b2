// The places of all fields, per layout: tables to hold beside a hex dump.
#pragma once

#include <cstdint>
#include <span>

#include "base/byte_view.h"
#include "shim/shim_cache.h"

namespace ovrik {

/// A field that a layout does not have.
constexpr uint32_t absent = 0xFFFFFFFF;

/// Layout 1, the cache of Windows XP: 96 slots of fixed length behind a most-recently-used list.
namespace xp_cache {
constexpr uint32_t magic = 0xDEADBEEF;
constexpr uint32_t count_at = 8;
constexpr uint32_t order_list_at = 16;  ///< u32 each: index of the entry at this use order
constexpr uint32_t order_list_length = 96;
constexpr uint32_t header_bytes = 400;
constexpr uint32_t entry_bytes = 552;
constexpr uint32_t path_at = 0;  ///< UTF-16LE, ends at a NUL or with the field
constexpr uint32_t path_bytes = 520;
constexpr uint32_t modified_at = 528;     ///< FILETIME
constexpr uint32_t file_size_at = 536;    ///< u64
constexpr uint32_t update_time_at = 544;  ///< FILETIME; 0 marks an unused slot
}  // namespace xp_cache

/// Layouts 2 to 7: a header, an array of entries, then the paths that the entries point to. An
/// entry begins with a counted string head: u16 length in bytes, u16 length + 2.
struct array_layout {
  shim_layout layout;
  uint32_t magic;  ///< u32 at the cache's start; the entry count follows at +4
  uint32_t header_bytes;
  uint32_t entry_bytes;
  uint32_t zero_at;          ///< u32 that must be 0
  uint32_t path_offset_at;   ///< from the buffer's start
  uint32_t offset_width;     ///< bytes of the path offset, and of the data's size and offset
  uint32_t modified_at;      ///< FILETIME
  uint32_t file_size_at;     ///< u64
  uint32_t flags_at;         ///< u32 `flags1`, u32 `flags2`
  uint32_t data_at;          ///< size, then offset from the buffer's start
  uint64_t least_file_size;  ///< tells a Server 2003 form from a Vista form
  uint32_t flags1_limit;     ///< `flags1` must be below; tells the same the other way round
};

/// The array layouts in the order in which a cache is tried against them.
std::span<const array_layout> array_layouts();

/// The row of a layout from 2 to 7.
const array_layout& array_layout_of(shim_layout layout);

/// True if the bytes of `entry`, which reach to the buffer's end, pass the tests of `layout`.
bool is_array_entry(byte_view entry, const array_layout& layout);

/// The path offset, data size or data offset at `at`, as wide as the layout has them.
uint64_t offset_field(byte_view entry, const array_layout& layout, uint32_t at);

/// Layouts 9 to 14: entries with a signature and a length of their own, one behind the other. The
/// head is the same in all: signature, tag, data size, path length, path.
namespace signed_entry {
constexpr uint32_t tag_at = 4;
constexpr uint32_t data_size_at = 8;        ///< u32: bytes behind this field
constexpr uint32_t bytes_before_data = 12;  ///< the whole entry has data size + 12 bytes
constexpr uint32_t path_length_at = 12;     ///< u16, in bytes
constexpr uint32_t path_at = 14;
constexpr uint32_t second_form_path_length_at = 14;  ///< of an entry of layout 10 whose u16 at +12
constexpr uint32_t second_form_path_at = 16;         ///< is no path length
constexpr uint32_t least_bytes = 16;                 ///< entry length that the recogniser reports
constexpr uint32_t second_form_least_bytes = 18;
}  // namespace signed_entry

/// Where the fields behind the path of a signed entry lie; bytes from the path's end.
struct signed_layout {
  shim_layout layout;
  uint32_t header_bytes;
  uint32_t flags1_at;
  uint32_t flags2_at;
  uint32_t modified_at;
};

/// The row of a layout from 9 to 14.
const signed_layout& signed_layout_of(shim_layout layout);

/// The signed layout whose header has `header_bytes` bytes, 0 excluded; null if there is none.
const signed_layout* signed_layout_by_header(uint32_t header_bytes);

/// True if a path of the length at `path_length_at` may follow in `entry`, which reaches to the
/// buffer's end and must have `least_bytes` bytes. A `signature` of 0 is not compared.
bool is_signed_entry(byte_view entry, uint32_t signature, uint32_t path_length_at,
                     uint32_t least_bytes);

/// True if `entry`, which reaches to the buffer's end, is an entry of a cache without a header,
/// whatever its signature; `layout` is then `bare` or `bare_with_package`.
bool is_bare_entry(byte_view entry, shim_layout& layout);

/// True if the third and fourth byte at `offset` are those of an entry signature ("ts").
bool has_signature_mark(byte_view bytes, uint64_t offset);

}  // namespace ovrik
