#include "support/cache_builder.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace test_support {
namespace {

struct layout_size {
  int layout;
  size_t header;
  size_t entry;  ///< 0: as long as its content
  uint32_t magic;
};

constexpr layout_size layout_sizes[] = {
    {1, 400, 552, 0xDEADBEEF}, {2, 8, 24, 0xBADC0FFE},
    {3, 8, 32, 0xBADC0FFE},    {4, 8, 24, 0xBADC0FFE},
    {5, 8, 32, 0xBADC0FFE},    {6, 128, 32, 0xBADC0FEE},
    {7, 128, 48, 0xBADC0FEE},  {9, 0, 0, 0},
    {10, 128, 0, 128},         {12, 0, 0, 0},
    {13, 48, 0, 48},           {14, 52, 0, 52},
};

constexpr size_t xp_slots = 96;
constexpr size_t xp_list_at = 16;

const layout_size& sizes_of(int layout) {
  for (const layout_size& row : layout_sizes) {
    if (row.layout == layout) return row;
  }
  throw std::invalid_argument("no such cache layout: " + std::to_string(layout));
}

uint32_t low32(uint64_t value) { return static_cast<uint32_t>(value); }

}  // namespace

cache_builder::cache_builder(int layout) : m_layout(sizes_of(layout).layout) {}

cache_builder& cache_builder::entry(cache_entry added) {
  m_entries.push_back(std::move(added));
  return *this;
}

cache_builder& cache_builder::entry(std::u16string path, uint64_t modified) {
  return entry(cache_entry{.path = std::move(path), .modified = modified});
}

cache_builder& cache_builder::count(uint32_t stated) {
  m_count = stated;
  return *this;
}

cache_builder& cache_builder::slots(size_t number) {
  m_slots = number;
  return *this;
}

cache_builder& cache_builder::order(std::vector<uint32_t> indexes) {
  m_order = std::move(indexes);
  return *this;
}

cache_builder& cache_builder::signature(std::string text) {
  m_signature = std::move(text);
  return *this;
}

std::vector<uint8_t> cache_builder::bytes() const {
  const layout_size& sizes = sizes_of(m_layout);
  std::vector<uint8_t> cache(sizes.header);
  if (sizes.header > 0) put_u32(cache, 0, sizes.magic);
  if (m_layout == 1) {
    compose_xp(cache);
  } else if (is_chain()) {
    for (const cache_entry& entry : m_entries) append(cache, chain_entry(entry));
  } else {
    compose_array(cache);
  }
  return cache;
}

size_t cache_builder::entry_at(size_t index) const {
  const layout_size& sizes = sizes_of(m_layout);
  size_t at = sizes.header + sizes.entry * index;
  for (size_t i = 0; is_chain() && i < index; ++i) at += chain_entry(m_entries.at(i)).size();
  return at;
}

// Header: +4 slots, +8 count, +16 most-recently-used list of 96 indexes, unused ones all ones.
void cache_builder::compose_xp(std::vector<uint8_t>& cache) const {
  const auto used = static_cast<uint32_t>(m_entries.size());
  put_u32(cache, 4, xp_slots);
  put_u32(cache, 8, m_count.value_or(used));
  std::vector<uint32_t> list = m_order;
  for (uint32_t i = 0; m_order.empty() && i < used; ++i) list.push_back(i);
  list.resize(xp_slots, 0xFFFFFFFF);
  for (size_t i = 0; i < xp_slots; ++i) put_u32(cache, xp_list_at + 4 * i, list[i]);

  cache.resize(entry_at(std::max({m_slots, m_entries.size(), xp_slots})));
  for (size_t i = 0; i < m_entries.size(); ++i) {
    const cache_entry& entry = m_entries[i];
    const size_t at = entry_at(i);
    std::vector<uint8_t> path;
    append_utf16(path, entry.path);
    path.resize(std::min<size_t>(path.size(), 520));
    put(cache, at, path);
    put_u64(cache, at + 528, entry.modified);
    put_u64(cache, at + 536, entry.file_size);
    put_u64(cache, at + 544, entry.update);
  }
}

void cache_builder::compose_array(std::vector<uint8_t>& cache) const {
  put_u32(cache, 4, m_count.value_or(static_cast<uint32_t>(m_entries.size())));
  cache.resize(entry_at(std::max(m_slots, m_entries.size())));

  std::vector<size_t> data_at(m_entries.size());
  for (size_t i = m_entries.size(); i-- > 0 && m_layout >= 6;) {
    if (m_entries[i].data.empty()) continue;
    data_at[i] = cache.size();
    append(cache, m_entries[i].data);
  }
  for (size_t i = m_entries.size(); i-- > 0;) {
    const size_t path_at = cache.size();
    append_utf16(cache, m_entries[i].path);
    append_u16(cache, 0);
    compose_slot(cache, entry_at(i), m_entries[i], path_at, data_at[i]);
  }
}

// Even layouts are the 32-bit forms, odd ones the 64-bit forms, whose path offset is wider and
// aligned to 8. Behind the time come the file size (2, 3) or the flags (4 to 7), then the data
// size and offset (6, 7).
void cache_builder::compose_slot(std::vector<uint8_t>& cache, size_t at, const cache_entry& entry,
                                 size_t path_at, size_t data_at) const {
  const bool wide = m_layout % 2 == 1;
  const auto length = static_cast<uint16_t>(2 * entry.path.size());
  put_u16(cache, at, length);
  put_u16(cache, at + 2, static_cast<uint16_t>(length + 2));
  put_u32(cache, at + (wide ? 8 : 4), low32(path_at));
  const size_t time_at = at + (wide ? 16 : 8);
  put_u64(cache, time_at, entry.modified);
  if (m_layout <= 3) {
    put_u64(cache, time_at + 8, entry.file_size);
  } else {
    put_u32(cache, time_at + 8, entry.flags1);
    put_u32(cache, time_at + 12, entry.flags2);
  }
  if (m_layout >= 6) {
    put_u32(cache, time_at + 16, low32(entry.data.size()));
    put_u32(cache, time_at + (wide ? 24 : 20), low32(data_at));
  }
}

std::vector<uint8_t> cache_builder::chain_entry(const cache_entry& entry) const {
  const bool flags = m_layout == 9 || m_layout == 10;
  std::vector<uint8_t> body;  // what the data size counts
  if (entry.second_form) append_u16(body, 0);
  append_u16(body, static_cast<uint16_t>(2 * entry.path.size()));
  append_utf16(body, entry.path);
  if (flags && !entry.second_form) append_u16(body, 0);  // no package data
  if (flags) append_u32(body, entry.flags1);
  if (flags || m_layout == 12) append_u32(body, entry.flags2);
  if (m_layout != 12) append_u64(body, entry.modified);
  append_u32(body, low32(entry.data.size()));
  append(body, entry.data);

  std::vector<uint8_t> whole;
  append(whole, m_signature);
  append_u32(whole, entry.tag);
  append_u32(whole, low32(body.size()));
  append(whole, body);
  return whole;
}

}  // namespace test_support
