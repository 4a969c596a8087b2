// Composes a registry hive byte by byte from a small tree, as Windows lays it out: base block,
// bins of whole pages, cells on 8-byte boundaries, subkeys in upper-case order with the hashes
// of their list form, one security descriptor shared by all keys.
//
// All positions are offsets in the composed bytes, of the cell's size field. Paths go down from
// the root with backslashes ("ControlSet001\\Control"); "" is the root itself. A path or name
// that is not in the tree is a std::out_of_range.

#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/bytes.h"

namespace test_support {

enum class list_form { lh, lf, li, ri_of_lh, ri_of_lf, ri_of_li };

enum class data_form {
  by_size,   ///< up to 4 bytes resident, up to 16,344 in one cell, more in segments
  one_cell,  ///< one cell of its own, whatever the size
  segments,  ///< a "db" cell with segments of 16,344 bytes
};

/// Names are stored byte for byte; one that holds a zero byte is marked as UTF-16.
struct hive_value {
  std::string name;
  uint32_t type = 3;  ///< REG_BINARY
  bytes data = {};
  data_form form = data_form::by_size;
};

struct hive_key {
  std::string name;
  uint64_t last_write = 0x01D8000000000000;
  std::vector<hive_value> values = {};
  std::vector<hive_key> subkeys = {};
  list_form form = list_form::lh;  ///< the ri forms have two sublists or more
  bool sorted = true;              ///< false: subkeys stay in the order given

  /// The key at the path below this one, with all keys on the way; missing ones are added.
  /// Valid until a key is added beside it or beside one of its parents.
  hive_key& at(const std::string& path);
};

class hive_builder {
 public:
  /// `name` goes into the base block, at most 32 characters of it.
  explicit hive_builder(std::string name = "SYSTEM") : m_name(std::move(name)) {}

  hive_key root{.name = "ROOT"};

  /// Composes the hive; the positions below are those of the last call.
  std::vector<uint8_t> bytes();

  size_t key_at(const std::string& path) const { return m_places.at(path).cell; }  ///< nk
  /// Subkey list; 0 without subkeys.
  size_t list_at(const std::string& path) const { return m_places.at(path).list; }
  /// 0 without values.
  size_t value_list_at(const std::string& path) const { return m_places.at(path).value_list; }
  /// vk
  size_t value_at(const std::string& path, const std::string& name) const {
    return m_places.at(path).values.at(name).cell;
  }
  /// Data cell or "db" cell; 0 for resident data.
  size_t data_at(const std::string& path, const std::string& name) const {
    return m_places.at(path).values.at(name).data;
  }

 private:
  friend class hive_composer;
  struct value_place {
    size_t cell = 0;
    size_t data = 0;
  };
  struct key_place {
    size_t cell = 0;
    size_t list = 0;
    size_t value_list = 0;
    std::map<std::string, value_place> values;
  };

  std::string m_name;
  std::map<std::string, key_place> m_places;
};

}  // namespace test_support
