// The layouts of a Shim Cache that Windows has written, and the record of one cached program.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/byte_view.h"

namespace ovrik {

/// The byte layouts of a cache, whose rows stand in shim_layouts. 8 and 11 are reserved, and no
/// input yields them.
enum class shim_layout : uint32_t {
  none = 0,
  xp = 1,
  server2003_x86 = 2,
  server2003_x64 = 3,
  vista_x86 = 4,
  vista_x64 = 5,
  win7_x86 = 6,
  win7_x64 = 7,
  bare = 9,
  win8 = 10,
  bare_with_package = 12,
  win10 = 13,
  win10_later = 14,
};

/// One cached program. Times are FILETIMEs (UTC), 0 where the layout has none.
struct shim_cache_entry {
  bool valid = false;                      ///< passed its layout's tests; false only in raw mode
  bool in_slack = false;                   ///< starts at or behind the end of the value's own data
  uint32_t signature = 0;                  ///< first four bytes of the entry, for layouts 9 to 14
  shim_layout layout = shim_layout::none;  ///< a kept invalid entry: none before a valid one
  byte_view path;                          ///< UTF-16LE as stored, up to a NUL or to its end
  uint64_t file_size = 0;
  uint64_t update_time = 0;
  uint64_t modified_time = 0;
  int32_t order = -1;         ///< position in the most-recently-used list of layout 1
  uint32_t entry_number = 0;  ///< of the walk's step, from 0; invalid entries are counted too
  uint32_t entry_offset = 0;  ///< from the buffer's start, in bytes, where the step began
  uint64_t path_offset = 0;   ///< layouts 2 to 7
  uint32_t flags1 = 0;
  uint32_t flags2 = 0;
  uint64_t data_size = 0;    ///< layouts 6 and 7; the data themselves are not copied
  uint64_t data_offset = 0;  ///< from the buffer's start, in bytes
  uint32_t entry_tag = 0;    ///< word at +4 of layouts 9 to 14; not interpreted
};

/// What a path of the system itself begins with.
constexpr std::string_view native_prefix = "\\??\\";

/// The path as stored, in UTF-8.
std::string path_raw(const shim_cache_entry& entry);

/// What entries are sorted by: the path in lower case and without its first "\??\".
std::string path_key(const shim_cache_entry& entry);

}  // namespace ovrik
