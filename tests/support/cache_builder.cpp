#include "support/cache_builder.h"

namespace test_support {
namespace {

// By the number of the layout. A header begins with a mark or its own length; entries without a
// length here are as long as their content.
constexpr size_t header_bytes[15] = {0, 400, 8, 8, 8, 8, 128, 128, 0, 0, 128, 0, 0, 48, 52};
constexpr size_t entry_bytes[15] = {0, 552, 24, 32, 24, 32, 32, 48};
constexpr uint32_t vista_mark = 0xBADC0FFE, seven_mark = 0xBADC0FEE;
constexpr uint32_t marks[15] = {0,          0xDEADBEEF, vista_mark, vista_mark,
                                vista_mark, vista_mark, seven_mark, seven_mark};

constexpr uint32_t xp_slots = 96;
constexpr int first_chain = 9;

uint32_t low32(uint64_t value) { return static_cast<uint32_t>(value); }

}  // namespace

std::vector<uint8_t> cache_builder::bytes() const {
  const size_t header = header_bytes[m_layout];
  std::vector<uint8_t> cache(header);
  if (header != 0) put_u32(cache, 0, marks[m_layout] != 0 ? marks[m_layout] : low32(header));
  if (m_layout >= first_chain) {
    for (const cache_entry& entry : m_entries) append(cache, chain_entry(entry));
    return cache;
  }
  put_u32(cache, m_layout == 1 ? 8 : 4, stated_count.value_or(low32(m_entries.size())));
  if (m_layout == 1) {
    compose_xp(cache);
  } else {
    compose_array(cache);
  }
  return cache;
}

size_t cache_builder::entry_at(size_t index) const {
  size_t at = header_bytes[m_layout] + entry_bytes[m_layout] * index;
  for (size_t i = 0; m_layout >= first_chain && i < index; ++i) {
    at += chain_entry(m_entries.at(i)).size();
  }
  return at;
}

// Header: +4 slots, +8 count, +16 most-recently-used list of 96 indexes, unused ones all ones.
void cache_builder::compose_xp(std::vector<uint8_t>& cache) const {
  put_u32(cache, 4, xp_slots);
  std::vector<uint32_t> list = m_order;
  for (uint32_t i = 0; m_order.empty() && i < m_entries.size(); ++i) list.push_back(i);
  list.resize(xp_slots, 0xFFFFFFFF);
  for (size_t i = 0; i < xp_slots; ++i) put_u32(cache, 16 + 4 * i, list[i]);

  cache.resize(entry_at(xp_slots));
  for (size_t i = 0; i < m_entries.size(); ++i) {
    const cache_entry& entry = m_entries[i];
    const size_t at = entry_at(i);
    std::vector<uint8_t> path;
    append_utf16(path, entry.path.substr(0, 260));
    put(cache, at, path);
    put_u64(cache, at + 528, entry.modified);
    put_u64(cache, at + 536, entry.file_size);
    put_u64(cache, at + 544, entry.update);
  }
}

// Even layouts are the 32-bit forms, odd ones the 64-bit forms, whose path offset is wider and
// aligned to 8. Behind the time come the file size (2, 3) or the flags (4 to 7), then the data
// size and offset (6, 7).
void cache_builder::compose_array(std::vector<uint8_t>& cache) const {
  const bool wide = m_layout % 2 == 1;
  const size_t time_at = wide ? 16 : 8;  // of an entry
  cache.resize(entry_at(m_entries.size()));
  for (size_t i = m_entries.size(); i-- > 0 && m_layout >= 6;) {
    const size_t at = entry_at(i) + time_at;
    const cache_entry& entry = m_entries[i];
    put_u32(cache, at + 16, low32(entry.data.size()));
    if (!entry.data.empty()) put_u32(cache, at + (wide ? 24 : 20), low32(cache.size()));
    append(cache, entry.data);
  }
  for (size_t i = m_entries.size(); i-- > 0;) {
    const cache_entry& entry = m_entries[i];
    const size_t at = entry_at(i);
    const auto length = static_cast<uint16_t>(2 * entry.path.size());
    put_u16(cache, at, length);
    put_u16(cache, at + 2, static_cast<uint16_t>(length + 2));
    put_u32(cache, at + (wide ? 8 : 4), low32(cache.size()));
    put_u64(cache, at + time_at, entry.modified);
    const uint64_t flags = uint64_t{entry.flags2} << 32 | entry.flags1;
    put_u64(cache, at + time_at + 8, m_layout <= 3 ? entry.file_size : flags);
    append_utf16(cache, entry.path);
    append_u16(cache, 0);
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

  std::vector<uint8_t> whole = as_bytes("10ts");
  append_u32(whole, entry.tag);
  append_u32(whole, low32(body.size()));
  append(whole, body);
  return whole;
}

}  // namespace test_support
