#include "support/hive_builder.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace test_support {
namespace {

constexpr size_t base_block_size = 0x1000;
constexpr size_t bin_header_size = 0x20;
constexpr size_t page_size = 0x1000;
constexpr size_t segment_size = 16344;
constexpr size_t sublist_entries = 500;
constexpr uint32_t no_cell = 0xFFFFFFFF;

// Self-relative descriptor: owner Administrators, group and full access for Local System.
constexpr uint32_t security_descriptor[] = {
    0x80040001, 48,         64,         0,          20,  // where owner, group and lists stand
    0x001C0002, 1,                                       // access list, one entry
    0x00140000, 0x000F003F, 0x00000101, 0x05000000, 18,  // full access, Local System
    0x00000201, 0x05000000, 32,         544,             // owner
    0x00000101, 0x05000000, 18,                          // group
};

uint32_t low32(size_t value) { return static_cast<uint32_t>(value); }

size_t round_up(size_t value, size_t unit) { return (value + unit - 1) / unit * unit; }

bool is_utf16(const std::string& name) { return name.find('\0') != std::string::npos; }

std::string upper(std::string text) {
  for (char& unit : text) {
    if (unit >= 'a' && unit <= 'z') unit = static_cast<char>(unit - 'a' + 'A');
  }
  return text;
}

uint32_t lf_hash(const std::string& name) {
  bytes first = as_bytes(name.substr(0, 4));
  first.resize(4);
  return get_u32(first, 0);
}

uint32_t lh_hash(const std::string& name) {
  uint32_t hash = 0;
  for (const uint8_t unit : as_bytes(upper(name))) hash = hash * 37 + unit;
  return hash;
}

std::string below(const std::string& path, const std::string& name) {
  return path.empty() ? name : path + "\\" + name;
}

/// Writes the checksum: XOR of the 127 words in front of it; 0 and all ones are not used.
void seal_base_block(bytes& hive) {
  uint32_t sum = 0;
  for (size_t at = 0; at < 0x1FC; at += 4) sum ^= get_u32(hive, at);
  if (sum == 0) sum = 1;
  if (sum == 0xFFFFFFFF) sum = 0xFFFFFFFE;
  put_u32(hive, 0x1FC, sum);
}

/// Base block and bins; hands out cells, whose fields count from the size field on.
class cell_store {
 public:
  cell_store() : m_hive(base_block_size) {}

  /// Position of a new, zeroed cell for `content` bytes behind the size field.
  size_t allocate(size_t content) {
    const size_t size = round_up(content + 4, 8);
    if (size > m_hive.size() - m_next) {
      close_bin();
      open_bin(round_up(size + bin_header_size, page_size));
    }
    const size_t at = std::exchange(m_next, m_next + size);
    put_u32(m_hive, at, 0 - low32(size));
    return at;
  }

  size_t allocate(const bytes& content) {
    const size_t at = allocate(content.size());
    put(m_hive, at + 4, content);
    return at;
  }

  /// Gives the hive away, its last bin ended by a free cell.
  bytes finish() {
    close_bin();
    return std::move(m_hive);
  }

  void u16(size_t at, size_t value) { put_u16(m_hive, at, static_cast<uint16_t>(value)); }
  void u32(size_t at, size_t value) { put_u32(m_hive, at, low32(value)); }
  void u64(size_t at, uint64_t value) { put_u64(m_hive, at, value); }
  void text(size_t at, std::string_view value) { put(m_hive, at, as_bytes(value)); }
  void offset(size_t at, size_t cell) { u32(at, cell - base_block_size); }

 private:
  void close_bin() {
    if (m_next < m_hive.size()) u32(m_next, m_hive.size() - m_next);
  }

  void open_bin(size_t size) {
    const size_t at = m_hive.size();
    m_hive.resize(at + size);
    text(at, "hbin");
    offset(at + 4, at);
    u32(at + 8, size);
    m_next = at + bin_header_size;
  }

  bytes m_hive;
  size_t m_next = base_block_size;
};

}  // namespace

/// One composition: puts the cells of a tree down and notes where they lie.
class hive_composer {
 public:
  explicit hive_composer(hive_builder& builder) : m_builder(builder) { builder.m_places.clear(); }

  bytes compose() {
    m_security = m_cells.allocate(20 + sizeof(security_descriptor));
    const size_t root = add_key(m_builder.root, "", 0);
    m_cells.text(m_security + 4, "sk");
    m_cells.offset(m_security + 0x08, m_security);  // next and previous: itself
    m_cells.offset(m_security + 0x0C, m_security);
    m_cells.u32(m_security + 0x10, m_keys);
    m_cells.u32(m_security + 0x14, sizeof(security_descriptor));
    for (size_t i = 0; i < std::size(security_descriptor); ++i) {
      m_cells.u32(m_security + 0x18 + 4 * i, security_descriptor[i]);
    }
    bytes hive = m_cells.finish();
    fill_base_block(hive, root);
    return hive;
  }

 private:
  void fill_base_block(bytes& hive, size_t root) const {
    put(hive, 0, as_bytes("regf"));
    put_u32(hive, 0x04, 1);  // sequence numbers
    put_u32(hive, 0x08, 1);
    put_u64(hive, 0x0C, m_builder.root.last_write);
    put_u32(hive, 0x14, 1);  // version
    put_u32(hive, 0x18, m_segmented ? 5 : 3);
    put_u32(hive, 0x20, 1);  // format: memory
    put_u32(hive, 0x24, low32(root - base_block_size));
    put_u32(hive, 0x28, low32(hive.size() - base_block_size));
    put_u32(hive, 0x2C, 1);  // clustering
    for (size_t i = 0; i < std::min<size_t>(m_builder.m_name.size(), 32); ++i) {
      hive[0x30 + 2 * i] = static_cast<uint8_t>(m_builder.m_name[i]);
    }
    seal_base_block(hive);
  }

  size_t add_key(const hive_key& key, const std::string& path, size_t parent) {
    hive_builder::key_place place;
    const size_t at = place.cell = m_cells.allocate(0x4C + key.name.size());
    ++m_keys;
    m_cells.text(at + 4, "nk");
    m_cells.u16(at + 0x06, (is_utf16(key.name) ? 0u : 0x20u) | (parent == 0 ? 0x0Cu : 0u));
    m_cells.u64(at + 0x08, key.last_write);
    m_cells.offset(at + 0x14, parent == 0 ? at : parent);
    m_cells.u32(at + 0x18, key.subkeys.size());
    m_cells.u32(at + 0x20, no_cell);
    m_cells.u32(at + 0x24, no_cell);  // volatile subkeys
    m_cells.u32(at + 0x28, key.values.size());
    m_cells.u32(at + 0x2C, no_cell);
    m_cells.offset(at + 0x30, m_security);
    m_cells.u32(at + 0x34, no_cell);  // class
    m_cells.u16(at + 0x4C, key.name.size());
    m_cells.text(at + 0x50, key.name);

    size_t longest_name = 0, longest_data = 0;
    if (!key.values.empty()) {
      place.value_list = m_cells.allocate(4 * key.values.size());
      m_cells.offset(at + 0x2C, place.value_list);
    }
    for (size_t i = 0; i < key.values.size(); ++i) {
      const hive_value& value = key.values[i];
      const hive_builder::value_place value_place = add_value(value);
      m_cells.offset(place.value_list + 4 + 4 * i, value_place.cell);
      place.values.emplace(value.name, value_place);
      longest_name = std::max(longest_name, 2 * value.name.size());
      longest_data = std::max(longest_data, value.data.size());
    }
    m_cells.u32(at + 0x40, longest_name);
    m_cells.u32(at + 0x44, longest_data);

    std::vector<list_entry> entries;
    longest_name = 0;
    for (const hive_key& subkey : key.subkeys) {
      entries.push_back({subkey.name, add_key(subkey, below(path, subkey.name), at)});
      longest_name = std::max(longest_name, 2 * subkey.name.size());
    }
    m_cells.u32(at + 0x38, longest_name);
    if (key.sorted) {
      std::stable_sort(entries.begin(), entries.end(), [](const auto& left, const auto& right) {
        return upper(left.name) < upper(right.name);
      });
    }
    if (!entries.empty()) {
      place.list = add_list(key.form, entries);
      m_cells.offset(at + 0x20, place.list);
    }
    m_builder.m_places.emplace(path, std::move(place));
    return at;
  }

  struct list_entry {
    std::string name;
    size_t cell;
  };

  size_t add_list(list_form form, const std::vector<list_entry>& entries) {
    constexpr const char* signatures[] = {"lh", "lf", "li"};
    const auto number = static_cast<size_t>(form);
    return number < 3 ? add_plain_list(signatures[number], entries)
                      : add_list_of_lists(signatures[number - 3], entries);
  }

  size_t add_plain_list(std::string_view signature, const std::vector<list_entry>& entries) {
    const size_t width = signature == "li" ? 4 : 8;
    const size_t at = m_cells.allocate(4 + width * entries.size());
    m_cells.text(at + 4, signature);
    m_cells.u16(at + 6, entries.size());
    for (size_t i = 0; i < entries.size(); ++i) {
      m_cells.offset(at + 8 + width * i, entries[i].cell);
      if (width == 4) continue;
      const std::string& name = entries[i].name;
      m_cells.u32(at + 12 + width * i, signature == "lh" ? lh_hash(name) : lf_hash(name));
    }
    return at;
  }

  size_t add_list_of_lists(std::string_view signature, const std::vector<list_entry>& entries) {
    const size_t each = std::min(sublist_entries, (entries.size() + 1) / 2);
    const size_t count = (entries.size() + each - 1) / each;
    const size_t at = m_cells.allocate(4 + 4 * count);
    m_cells.text(at + 4, "ri");
    m_cells.u16(at + 6, count);
    for (size_t i = 0; i < count; ++i) {
      const auto first = entries.begin() + static_cast<std::ptrdiff_t>(i * each);
      const size_t length = std::min(each, entries.size() - i * each);
      const std::vector<list_entry> part(first, first + static_cast<std::ptrdiff_t>(length));
      m_cells.offset(at + 8 + 4 * i, add_plain_list(signature, part));
    }
    return at;
  }

  hive_builder::value_place add_value(const hive_value& value) {
    hive_builder::value_place place;
    const size_t size = value.data.size();
    const size_t at = place.cell = m_cells.allocate(0x14 + value.name.size());
    m_cells.text(at + 4, "vk");
    m_cells.u16(at + 0x06, value.name.size());
    m_cells.u32(at + 0x08, size);
    m_cells.u32(at + 0x10, value.type);
    m_cells.u16(at + 0x14, is_utf16(value.name) || value.name.empty() ? 0 : 1);
    m_cells.text(at + 0x18, value.name);
    if (value.form == data_form::by_size && size <= 4) {
      m_cells.u32(at + 0x08, size | 0x80000000);
      m_cells.text(at + 0x0C, as_text(value.data));
      return place;
    }
    const bool segmented = value.form == data_form::segments ||
                           (value.form == data_form::by_size && size > segment_size);
    place.data = segmented ? add_segments(value.data) : m_cells.allocate(value.data);
    m_cells.offset(at + 0x0C, place.data);
    return place;
  }

  // Windows gives every segment, the last one too, a cell of the full size.
  size_t add_segments(const bytes& data) {
    m_segmented = true;
    const size_t count = (data.size() + segment_size - 1) / segment_size;
    const size_t at = m_cells.allocate(12);
    const size_t list = m_cells.allocate(4 * count);
    m_cells.text(at + 4, "db");
    m_cells.u16(at + 6, count);
    m_cells.offset(at + 8, list);
    for (size_t i = 0; i < count; ++i) {
      const auto first = data.begin() + static_cast<std::ptrdiff_t>(i * segment_size);
      const size_t length = std::min(segment_size, data.size() - i * segment_size);
      bytes part(first, first + static_cast<std::ptrdiff_t>(length));
      part.resize(segment_size + 4);
      m_cells.offset(list + 4 + 4 * i, m_cells.allocate(part));
    }
    return at;
  }

  hive_builder& m_builder;
  cell_store m_cells;
  size_t m_security = 0;
  size_t m_keys = 0;
  bool m_segmented = false;
};

hive_key& hive_key::at(const std::string& path) {
  const size_t end = path.find('\\');
  const std::string first = path.substr(0, end);
  if (first.empty()) return *this;
  auto found = std::find_if(subkeys.begin(), subkeys.end(),
                            [&](const hive_key& key) { return key.name == first; });
  if (found == subkeys.end()) {
    subkeys.push_back({.name = first, .last_write = last_write});
    found = subkeys.end() - 1;
  }
  return end == std::string::npos ? *found : found->at(path.substr(end + 1));
}

std::vector<uint8_t> hive_builder::bytes() { return hive_composer(*this).compose(); }

}  // namespace test_support
