// Keys of a hive: nk cells and the lists (lf, lh, li, ri) that name the subkeys of one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/byte_view.h"
#include "hive/reg_clas.h"

namespace ovrik {

/// One key. The name points into the hive and lives as long as it does.
struct reg_key {
  uint32_t nk_offset = 0;        ///< absolute position of the nk cell
  uint64_t last_write_time = 0;  ///< FILETIME
  byte_view name;                ///< byte for byte as stored, whatever its encoding
};

/// True if `cell` is a key: an nk with a name, a parent and a last-write time. Free cells count.
bool is_live_nk(byte_view cell);

/// Lists the subkeys of the key at the absolute position `nk_offset` in the order of the hive.
/// Damage skips a subkey or ends a list, as the kind of list has it, and still gives true. False:
/// the hive has no such cell, or the list cannot be read or has another count than the key.
bool enum_subkeys(const reg_hive& hive, uint32_t nk_offset, std::vector<reg_key>& keys);

/// Finds the first subkey of that name, A to Z taken as a to z. False, with `key` kept: there is
/// none, or the subkeys cannot be listed.
bool find_subkey(const reg_hive& hive, uint32_t nk_parent_offset, const std::string& name,
                 reg_key& key);

/// `find_subkey` without the key.
bool has_subkey(const reg_hive& hive, uint32_t nk_parent_offset, const std::string& name);

}  // namespace ovrik
