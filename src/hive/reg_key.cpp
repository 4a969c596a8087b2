#include "hive/reg_key.h"

#include "base/text.h"
#include "hive/carving/hive_cell.h"
#include "hive/hive_header.h"
#include "hive/reg_assert.h"

namespace ovrik {

namespace {

// Places in a cell, counted from its size field (registry hive cells "nk", "lf", "lh", "li", "ri").
constexpr size_t signature_at = cell::content_at;

// Key node ("nk").
constexpr size_t last_write_at = 0x08;    // FILETIME
constexpr size_t parent_at = 0x14;        // offset, never followed
constexpr size_t subkey_count_at = 0x18;  // u32, volatile subkeys not included
constexpr size_t subkey_list_at = 0x20;   // offset
constexpr size_t security_at = 0x30;      // offset of an sk cell
constexpr size_t name_length_at = 0x4C;   // u16, in bytes
constexpr uint32_t name_at = 0x50;

// Subkey lists ("lf", "lh", "li", "ri").
constexpr size_t list_count_at = 0x06;  // u16
constexpr uint32_t list_entries_at = 0x08;
constexpr uint32_t hashed_entry_bytes = 8;                  // lf and lh: offset, hash
constexpr uint32_t plain_entry_bytes = cell::offset_bytes;  // li and ri: offset

enum class list_form { hashed, plain, index_root, unknown };

list_form form_of(byte_view list) {
  if (list.text_at(signature_at, "lf") || list.text_at(signature_at, "lh")) {
    return list_form::hashed;
  }
  if (list.text_at(signature_at, "li")) return list_form::plain;
  if (list.text_at(signature_at, "ri")) return list_form::index_root;
  return list_form::unknown;
}

/// Visits the subkeys of one key. Each list form has its own tests and its own answer to damage;
/// the check line tells in reports which one a key without security stood in.
class subkey_walk {
 public:
  subkey_walk(const reg_hive& hive, read_allowance& allowance, const key_visitor& visit)
      : m_hive(hive), m_allowance(allowance), m_visit(visit) {}

  bool run(uint32_t nk_offset) {
    const auto nk = m_hive.cell_at(nk_offset);
    if (!nk) return false;
    const uint32_t subkey_count = nk->u32_at(subkey_count_at);
    if (subkey_count == 0) return true;
    const uint32_t list_pos = nk->u32_at(subkey_list_at) + hive_base;
    const auto list = m_hive.cell_at(list_pos);
    if (!list) return false;
    const list_form form = form_of(*list);
    const uint32_t count = list->u16_at(list_count_at);
    if (form == list_form::index_root) return walk_index_root(list_pos, count);
    if (count != subkey_count) return false;
    if (form == list_form::hashed) return walk_hashed(list_pos, count);
    if (form == list_form::plain) return walk_plain(list_pos, count);
    return true;
  }

 private:
  /// lf and lh: what is no key is skipped.
  bool walk_hashed(uint32_t list_pos, uint32_t count) {
    for (uint32_t i = 0; i < count && m_allowance.take_step(); ++i) {
      const auto entry = m_hive.cell_at(hashed_entry(list_pos, i));
      if (!entry) return true;
      const uint32_t pos = entry->u32_at(0) + hive_base;
      if (was_visited(pos)) continue;
      if (!m_allowance.take_entry()) return true;
      const auto nk = m_hive.cell_at(pos);
      if (!nk || !is_live_nk(*nk)) continue;
      if (!visit(*nk, 3045)) return true;
    }
    return true;
  }

  /// li: what is no key ends the list.
  bool walk_plain(uint32_t list_pos, uint32_t count) {
    const uint32_t entries_pos = list_pos + list_entries_at;
    if (!m_hive.cell_at(entries_pos)) return false;
    const byte_view entries = m_hive.bytes_at(entries_pos, uint64_t{plain_entry_bytes} * count);
    for (uint32_t i = 0; i < count && m_allowance.take_step(); ++i) {
      const uint32_t pos = entries.u32_at(plain_entry_bytes * i) + hive_base;
      if (!visit_with_list(pos, 3101)) return true;
    }
    return true;
  }

  /// ri: what is no key ends its sublist, and the walk goes on with the next one.
  bool walk_index_root(uint32_t list_pos, uint32_t count) {
    const uint32_t entries_pos = list_pos + list_entries_at;
    if (!m_hive.cell_at(entries_pos)) return false;
    const byte_view entries = m_hive.bytes_at(entries_pos, uint64_t{plain_entry_bytes} * count);
    for (uint32_t i = 0; i < count && m_allowance.take_step(); ++i) {
      const uint32_t sublist_pos = entries.u32_at(plain_entry_bytes * i) + hive_base;
      if (was_visited(sublist_pos)) continue;
      if (!m_allowance.take_entry()) return true;
      const auto sublist = m_hive.cell_at(sublist_pos);
      if (!sublist) continue;
      note_visit(sublist_pos);
      const uint32_t sublist_count = sublist->u16_at(list_count_at);
      const list_form form = form_of(*sublist);
      if (form == list_form::hashed) {
        walk_hashed_sublist(sublist_pos, sublist_count);
      } else if (form == list_form::plain && !walk_plain_sublist(sublist_pos, sublist_count)) {
        return false;
      }
    }
    return true;
  }

  void walk_hashed_sublist(uint32_t list_pos, uint32_t count) {
    for (uint32_t i = 0; i < count && m_allowance.take_step(); ++i) {
      const auto entry = m_hive.cell_at(hashed_entry(list_pos, i));
      if (!entry || entry->u32_at(0) == 0) return;
      if (!visit_with_list(entry->u32_at(0) + hive_base, 2921)) return;
    }
  }

  bool walk_plain_sublist(uint32_t list_pos, uint32_t count) {
    const uint32_t entries_pos = list_pos + list_entries_at;
    if (!m_hive.cell_at(entries_pos)) return false;
    const byte_view entries = m_hive.bytes_at(entries_pos, uint64_t{plain_entry_bytes} * count);
    for (uint32_t i = 0; i < count && m_allowance.take_step(); ++i) {
      const uint32_t offset = entries.u32_at(plain_entry_bytes * i);
      if (offset == 0 || !visit_with_list(offset + hive_base, 2977)) return true;
    }
    return true;
  }

  static uint32_t hashed_entry(uint32_t list_pos, uint32_t index) {
    return list_pos + list_entries_at + hashed_entry_bytes * index;
  }

  /// True if the key or sublist at `pos` was visited before, as far as that was noted: a walk
  /// through few entries notes nothing, since room for all positions would cost more than it does.
  bool was_visited(uint32_t pos) {
    constexpr uint32_t hive_bytes_an_entry = 1024;
    if (++m_entries <= m_hive.size() / hive_bytes_an_entry) return false;
    if (m_visited.empty()) m_visited.resize(m_hive.size());
    return pos < m_visited.size() && m_visited[pos];
  }

  void note_visit(uint32_t pos) {
    if (pos < m_visited.size()) m_visited[pos] = true;
  }

  /// Visits the key at `pos` if it is one and its own subkey list, if it has subkeys, is in order.
  bool visit_with_list(uint32_t pos, unsigned check_line) {
    if (was_visited(pos)) return true;
    if (!m_allowance.take_entry()) return false;
    const auto nk = m_hive.cell_at(pos);
    if (!nk || !is_live_nk(*nk)) return false;
    if (nk->u32_at(subkey_count_at) != 0) {
      const auto list = m_hive.cell_at(nk->u32_at(subkey_list_at) + hive_base);
      if (!list || form_of(*list) == list_form::unknown) return false;
    }
    return visit(*nk, check_line);
  }

  /// Visits a key. False: its security cell is damaged.
  bool visit(byte_view nk, unsigned check_line) {
    const auto pos = static_cast<uint32_t>(nk.place());
    const uint32_t security_offset = nk.u32_at(security_at);
    reg_assert(security_offset != 0, "pSK != 0", check_line);
    const auto security = m_hive.cell_at(security_offset + hive_base);
    if (!security || !security->text_at(signature_at, "sk")) return false;
    note_visit(pos);
    m_visit(
        {pos, nk.u64_at(last_write_at), m_hive.bytes_at(pos + name_at, nk.u16_at(name_length_at))});
    return true;
  }

  const reg_hive& m_hive;
  read_allowance& m_allowance;
  const key_visitor& m_visit;
  uint64_t m_entries = 0;
  std::vector<bool> m_visited;  ///< by position
};

}  // namespace

bool is_live_nk(byte_view cell) {
  return cell.text_at(signature_at, "nk") && cell.u16_at(name_length_at) != 0 &&
         cell.u32_at(parent_at) != 0 && cell.u64_at(last_write_at) != 0;
}

bool is_named(const reg_key& key, std::string_view name) {
  return key.name.size() == name.size() && equal_ignoring_case(key.name.text(), name);
}

bool enum_subkeys(const reg_hive& hive, uint32_t nk_offset, read_allowance& allowance,
                  const key_visitor& visit) {
  return hive.usable() && subkey_walk(hive, allowance, visit).run(nk_offset);
}

bool find_subkey(const reg_hive& hive, uint32_t nk_parent_offset, std::string_view name,
                 read_allowance& allowance, reg_key& key) {
  reg_assert(nk_parent_offset != 0, "pKeyName && nk_parent_offset", 1896);
  reg_key first;
  bool found = false;
  const bool listed =
      enum_subkeys(hive, nk_parent_offset, allowance, [&](const reg_key& candidate) {
        if (found || !is_named(candidate, name)) return;
        first = candidate;
        found = true;
      });
  if (!listed || !found) return false;
  key = first;
  return true;
}

std::vector<bool> has_subkeys(const reg_hive& hive, uint32_t nk_parent_offset,
                              std::span<const std::string_view> names, read_allowance& allowance) {
  reg_assert(nk_parent_offset != 0, "pKeyName && nk_parent_offset", 1965);
  std::vector<bool> found(names.size());
  const bool listed = enum_subkeys(hive, nk_parent_offset, allowance, [&](const reg_key& key) {
    for (size_t i = 0; i < names.size(); ++i) {
      if (is_named(key, names[i])) found[i] = true;
    }
  });
  if (!listed) found.assign(names.size(), false);
  return found;
}

}  // namespace ovrik
