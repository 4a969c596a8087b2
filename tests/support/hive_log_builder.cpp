#include "support/hive_log_builder.h"

#include <algorithm>

#include "base/marvin32.h"

namespace test_support {

namespace {

constexpr uint64_t hash_seed = 0x82EF4D887A4E55C5;

void pad_to_sectors(bytes& block) { block.resize((block.size() + 511) / 512 * 512); }

void append_fill(bytes& block, const log_page_form& page) {
  append(block, bytes(page.size, static_cast<uint8_t>(page.fill)));
}

}  // namespace

bytes composed_base_block(const base_block_form& form) {
  bytes block(512);
  put(block, 0, as_bytes("regf"));
  put_u32(block, 0x04, form.sequence1);
  put_u32(block, 0x08, form.sequence2);
  put_u64(block, 0x0C, form.time_stamp);
  put_u32(block, 0x14, 1);  // version
  put_u32(block, 0x18, 5);
  put_u32(block, 0x20, 1);  // format: memory
  put_u32(block, 0x24, 0x20);
  put_u32(block, 0x28, form.bins_bytes);
  put_u32(block, 0x2C, 1);  // clustering
  bytes name;
  append_utf16(name, form.name);
  put(block, 0x30, name);
  put(block, 0x70, bytes(16, form.rm_id));
  uint32_t sum = 0;
  for (size_t at = 0; at < 0x1FC; at += 4) sum ^= get_u32(block, at);
  put_u32(block, 0x1FC, sum);
  return block;
}

bytes composed_log_entry(uint32_t sequence, const std::vector<log_page_form>& pages,
                         uint32_t bins_bytes) {
  bytes entry(0x28);
  put(entry, 0, as_bytes("HvLE"));
  put_u32(entry, 0x08, 1);  // flags
  put_u32(entry, 0x0C, sequence);
  put_u32(entry, 0x10, bins_bytes);
  put_u32(entry, 0x14, static_cast<uint32_t>(pages.size()));
  for (const log_page_form& page : pages) {
    append_u32(entry, page.offset);
    append_u32(entry, page.size);
  }
  for (const log_page_form& page : pages) append_fill(entry, page);
  pad_to_sectors(entry);
  put_u32(entry, 0x04, static_cast<uint32_t>(entry.size()));
  seal_log_entry(entry, 0);
  return entry;
}

void seal_log_entry(bytes& log, size_t at) {
  const ovrik::byte_view rest = ovrik::byte_view(log).from(at);
  const uint32_t size = std::max<uint32_t>(rest.u32_at(0x04), 0x28);
  put_u64(log, at + 0x18, ovrik::marvin32(rest.clip(0, size).from(0x28), hash_seed));
  put_u64(log, at + 0x20, ovrik::marvin32(rest.clip(0, 0x20), hash_seed));
}

bytes composed_dirty_vector(const std::vector<log_page_form>& pages, uint32_t bins_bytes) {
  bytes vector = as_bytes("DIRT");
  vector.resize(4 + bins_bytes / 4096);
  for (const log_page_form& page : pages) {
    for (uint32_t at = page.offset; at < page.offset + page.size; at += 512) {
      vector.at(4 + at / 4096) |= static_cast<uint8_t>(1 << (at / 512 % 8));
    }
  }
  pad_to_sectors(vector);
  for (const log_page_form& page : pages) append_fill(vector, page);
  return vector;
}

bytes composed_dirty_hive(const base_block_form& form) {
  bytes hive = composed_base_block(form);
  hive.resize(0x1000 + form.bins_bytes);
  for (size_t at = 0x1000; at < hive.size(); at += 512) hive[at] = '.';
  put(hive, 0x1000, as_bytes("hbin"));
  put_u64(hive, 0x1014, form.time_stamp);
  return hive;
}

}  // namespace test_support
