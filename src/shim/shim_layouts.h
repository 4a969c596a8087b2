// The layouts of a cache, one row each: tables to hold beside a hex dump. A layout of a later
// Windows is an enumerator of `shim_layout` and a row here; the recogniser, the walks and the
// carver of pages read what is special about it from its row.
#pragma once

#include <cstdint>
#include <span>

#include "base/byte_view.h"
#include "shim/shim_cache.h"

namespace ovrik {

/// A field that a layout does not have, or a limit that it does not set.
constexpr uint32_t absent = 0xFFFFFFFF;

/// How the entries of a cache follow each other, which decides by which walk it is read.
enum class shim_family {
  none,
  slots,  ///< 96 slots of fixed length, some unused, behind a most-recently-used list
  array,  ///< a header, entries of fixed length, then the paths that the entries point to
  chain,  ///< entries with a signature and a length of their own, one behind the other
};

/// How the carver tells the 4 KiB pages of a cache when no registry tree leads to them.
enum class carving_mark {
  not_looked_for,    ///< a cache of this layout is passed over like any other bytes
  none,              ///< its pages cannot be told, and its first page ends the scan
  entries,           ///< an entry stands where one can begin on a page
  entries_or_paths,  ///< the same, or a path begins near the page's end
};

/// One layout. Offsets and lengths are in bytes, numbers are little-endian. The places of fields
/// count from the start of the entry; in a chain those of the flags and of the time count from the
/// end of the path.
struct shim_layout_row {
  shim_layout layout = shim_layout::none;
  const char* name = "";  ///< the Windows that writes it, for people; no cache states it
  shim_family family = shim_family::none;

  // The columns of an output row.
  bool has_file_size = false;
  bool has_flags = false;

  // The header. A chain whose header has 0 bytes begins with its first entry.
  uint32_t magic = 0;  ///< first u32 of slots and arrays; the header of a chain states its length
  uint32_t count_at = absent;  ///< u32: number of entries; a chain has none
  uint32_t header_bytes = 0;
  uint32_t entry_bytes = 0;  ///< 0: each entry has a length of its own

  // The fields of an entry.
  uint32_t zero_at = absent;         ///< u32 that must be 0
  uint32_t path_offset_at = absent;  ///< where the path is, from the start of the cache
  uint32_t offset_width = 0;      ///< bytes of the path offset, and of the data's size and offset
  uint32_t modified_at = absent;  ///< FILETIME
  uint32_t update_time_at = absent;  ///< FILETIME; 0 marks an unused slot
  uint32_t file_size_at = absent;    ///< u64
  uint32_t flags1_at = absent;       ///< u32
  uint32_t flags2_at = absent;       ///< u32
  uint32_t data_at = absent;         ///< size, then offset from the start of the cache

  // Tests that an entry has to pass. A file size and a pair of flags occupy the same bytes: the
  // size tells a Server 2003 form from a Vista form, and the flags the other way round.
  uint64_t least_file_size = 0;
  uint32_t flags1_limit = absent;  ///< `flags1` must be below
  bool has_package = false;        ///< of chains without a header: a package follows the path

  // How a walk goes on.
  bool stale_after_valid = false;      ///< raw mode steps over a bad entry only behind a good one
  bool second_form = false;            ///< an entry may have its path two bytes later
  bool must_fit = false;               ///< an entry that the buffer cuts ends the walk
  bool length_from_bad_place = false;  ///< a walk that had to search for an entry goes on behind
                                       ///< it by the length that stood where it had looked first
  bool is_guessed_before_search = false;  ///< the first signature is tried for at this header
                                          ///< length if the header states a length of 0

  // Carving.
  carving_mark mark = carving_mark::not_looked_for;
  uint32_t carving_magic = 0;         ///< the u32 that the carver takes for the start of a cache
  uint32_t carving_time_at = absent;  ///< FILETIME that must be a real one in an entry on a page

  bool has_update_time() const { return update_time_at != absent; }
  bool has_use_order() const { return family == shim_family::slots; }
};

/// All layouts, in the order in which a cache is tried against them.
std::span<const shim_layout_row> shim_layout_rows();

/// The row of a layout. A number that is no layout has the row of `shim_layout::none`, which has
/// no family and no fields.
const shim_layout_row& layout_facts(shim_layout layout);

/// What the family `slots` has besides its row.
namespace slot_cache {
constexpr uint32_t order_list_at = 16;  ///< u32 each: index of the entry at this use order
constexpr uint32_t order_list_length = 96;
constexpr uint32_t path_at = 0;  ///< UTF-16LE, ends at a NUL or with the field
constexpr uint32_t path_bytes = 520;
}  // namespace slot_cache

/// The head of an entry of the family `array`: a counted string without its text.
namespace array_entry {
constexpr uint32_t path_length_at = 0;  ///< u16, in bytes
constexpr uint32_t path_room_at = 2;    ///< u16: path length with the terminator
constexpr uint32_t terminator_bytes = 2;
}  // namespace array_entry

/// The head of an entry of the family `chain`, the same in all layouts: signature, tag, data size,
/// path length, path.
namespace chain_entry {
constexpr uint32_t signature_at = 0;
constexpr uint32_t tag_at = 4;
constexpr uint32_t data_size_at = 8;        ///< u32: bytes behind this field
constexpr uint32_t bytes_before_data = 12;  ///< the whole entry has data size + 12 bytes
constexpr uint32_t path_length_at = 12;     ///< u16, in bytes
constexpr uint32_t path_at = 14;
constexpr uint32_t least_bytes = 16;
constexpr uint32_t second_form_path_length_at = 14;
constexpr uint32_t second_form_path_at = 16;
constexpr uint32_t second_form_least_bytes = 18;
}  // namespace chain_entry

/// True if the bytes of `entry`, which reach to the buffer's end, pass the tests of an array entry.
bool is_array_entry(byte_view entry, const shim_layout_row& row);

/// The path offset, data size or data offset at `at` of an array entry, as wide as the layout has
/// them.
uint64_t offset_field(byte_view entry, const shim_layout_row& row, uint32_t at);

/// True if the bytes of `entry`, which reach to the buffer's end, pass the tests of a chain entry.
/// A `signature` of 0 is not compared. Where no header tells the layout, the entry has to.
bool is_chain_entry(byte_view entry, const shim_layout_row& row, uint32_t signature);

/// `is_chain_entry` for an entry in the second form of a layout that has one.
bool is_second_form_entry(byte_view entry, uint32_t signature);

/// True if the third and fourth byte at `offset` are those of an entry signature ("ts").
bool has_signature_mark(byte_view bytes, uint64_t offset);

}  // namespace ovrik
