// Keys of a hive: nk cells and the lists (lf, lh, li, ri) that name the subkeys of one.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "base/byte_view.h"
#include "hive/read_allowance.h"
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

/// True if `name` is the key's name, A to Z taken as a to z.
bool is_named(const reg_key& key, std::string_view name);

/// Is given one subkey.
using key_visitor = std::function<void(const reg_key& key)>;

/// Visits the subkeys of the key at the absolute position `nk_offset` in the order of the hive, one
/// that is listed more than once perhaps as often. Damage skips a subkey or ends a list, as the
/// kind of list has it, and still gives true, as does the end of the allowance. False: the hive has
/// no such cell, or the list cannot be read or has another count than the key; what was visited so
/// far does not count then.
bool enum_subkeys(const reg_hive& hive, uint32_t nk_offset, read_allowance& allowance,
                  const key_visitor& visit);

/// Finds the first subkey of that name, A to Z taken as a to z. False, with `key` kept: there is
/// none, or the subkeys cannot be listed.
bool find_subkey(const reg_hive& hive, uint32_t nk_parent_offset, std::string_view name,
                 read_allowance& allowance, reg_key& key);

/// Tells which of `names` are those of subkeys, one flag each: none if the subkeys cannot be
/// listed.
std::vector<bool> has_subkeys(const reg_hive& hive, uint32_t nk_parent_offset,
                              std::span<const std::string_view> names, read_allowance& allowance);

}  // namespace ovrik
