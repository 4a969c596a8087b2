#include "hive/reg_value.h"

#include <algorithm>

#include "base/text.h"
#include "base/utf16.h"
#include "hive/carving/hive_cell.h"
#include "hive/hive_header.h"
#include "hive/reg_assert.h"
#include "hive/reg_key.h"

namespace ovrik {

namespace {

// Places in a cell, counted from its size field (registry hive cells "nk", "vk", "db").
constexpr size_t signature_at = cell::content_at;
constexpr uint32_t content_at = cell::content_at;  // of a data cell, a value or segment list

// Key node ("nk").
constexpr size_t value_count_at = 0x28;
constexpr size_t value_list_at = 0x2C;  // offset

// Key value ("vk").
constexpr size_t name_length_at = 0x06;  // u16, in bytes
constexpr size_t data_size_at = 0x08;    // u32, top bit set if resident
constexpr size_t data_offset_at = 0x0C;  // offset, or the resident data
constexpr size_t name_at = 0x18;
constexpr uint32_t resident_bit = 0x80000000;
constexpr uint32_t most_resident_bytes = 4;
constexpr uint32_t longest_name = 4095;
constexpr uint32_t largest_vk_cell = 4096;
constexpr uint32_t size_mask = 0x0FFFFFFF;
constexpr uint32_t data_limit = 0x1000000;

// Big data ("db") and its segments.
constexpr uint32_t largest_plain_data = 16351;
constexpr uint32_t segment_overhead = 8;

/// The bytes with places that count from their own start.
byte_view apart(byte_view bytes) { return {bytes.data(), bytes.size()}; }

/// Joins the `count` segments in `list` of a big value of `wanted` bytes; what they hold beyond is
/// slack, all of which stands behind all data. False: the allowance is used up.
bool join_segments(const reg_hive& hive, byte_view list, uint32_t count, uint32_t wanted,
                   read_allowance& allowance, value_bytes& bytes) {
  std::vector<byte_view> pieces;
  size_t data_size = 0;
  size_t whole_size = 0;
  const uint64_t most = std::min<uint64_t>(data_limit, uint64_t{wanted} + hive.size());
  const auto add = [&](uint32_t pos, uint32_t length) {
    if (pos >= hive.size()) return;
    length = std::min(length, hive.size() - pos);
    if (length == 0 || length > most - whole_size) return;
    pieces.push_back(hive.bytes_at(pos, length));
    whole_size += length;
  };
  for (uint64_t i = 0; i < count && list.has(cell::offset_bytes * i, cell::offset_bytes); ++i) {
    if (!allowance.take_value_cell()) break;
    const uint32_t segment_pos = list.u32_at(cell::offset_bytes * i) + hive_base;
    const auto segment = hive.cell_at(segment_pos);
    if (!segment) continue;
    const uint32_t size = cell_size(*segment);
    const uint32_t capacity = size > segment_overhead ? size - segment_overhead : 0;
    const uint32_t taken = std::min(capacity, wanted);
    wanted -= taken;
    add(segment_pos + content_at, taken);
    if (taken != 0) data_size = whole_size;
    add(segment_pos + content_at + taken, capacity - taken);
  }
  if (!allowance.take_bytes(whole_size)) return false;
  bytes.joined.reserve(whole_size);
  for (const byte_view piece : pieces) piece.append_to(bytes.joined);
  bytes.data_and_slack = byte_view(bytes.joined);
  bytes.data = bytes.data_and_slack.clip(0, data_size);
  return true;
}

/// Gives bytes that stand in one piece in the hive. False: the allowance is used up.
bool give_plain(byte_view data, read_allowance& allowance, value_bytes& bytes) {
  bytes.data = bytes.data_and_slack = apart(data);
  return allowance.take_bytes(data.size());
}

}  // namespace

std::string reg_value::name() const {
  const uint32_t length = vk.u16_at(name_length_at);
  if (length == 0 || length > longest_name) return {};
  const byte_view raw = vk.clip(name_at, length);
  // The name itself tells its encoding; the flags that should are not reliable.
  if (length == 1 || raw.u8_at(1) != 0) return raw.text();
  std::string name = utf16_text(raw.clip(0, length / 2 * 2));
  size_t units = 0;
  while (units < length / 2 && raw.u16_at(2 * units) != 0) ++units;
  size_t consumed = 2 * units;
  if (consumed + 2 <= length) consumed += 2;  // the terminator
  if (consumed + 2 < length) name += raw.text();
  return name;
}

bool reg_value::is_named(std::string_view name) const {
  // A name of UTF-16 has at least a byte for each unit, but for a terminator and an odd byte.
  const size_t longest = 2 * name.size() + 4;
  if (vk.u16_at(name_length_at) > longest && vk.u16_at(name_length_at) <= longest_name) {
    return false;
  }
  return equal_ignoring_case(this->name(), name);
}

bool enum_values(const reg_hive& hive, uint32_t nk_offset, read_allowance& allowance,
                 const value_visitor& visit) {
  if (!hive.usable()) return false;
  const auto nk = hive.cell_at(nk_offset);
  if (!nk || !is_live_nk(*nk)) return false;
  const uint32_t count = nk->u32_at(value_count_at);
  const uint32_t list_offset = nk->u32_at(value_list_at);
  if (count == 0 || list_offset == 0) return false;
  const uint32_t list_pos = list_offset + hive_base;
  if (!hive.cell_at(list_pos)) return false;
  const byte_view list = hive.bytes_at(list_pos + content_at, uint64_t{cell::offset_bytes} * count);
  for (uint64_t i = 0; i < count && list.has(cell::offset_bytes * i, cell::offset_bytes); ++i) {
    if (!allowance.take_value_cell()) break;
    const uint32_t offset = list.u32_at(cell::offset_bytes * i);
    const auto vk = hive.cell_at(offset + hive_base);
    if (!vk || offset > hive.size()) continue;
    reg_value value;
    if (vk->text_at(signature_at, "vk")) {
      const bool resident = (vk->u32_at(data_size_at) & resident_bit) != 0;
      value.vk = hive.bytes_at(offset + hive_base, name_at + uint64_t{vk->u16_at(name_length_at)});
      value.data_position = vk->u32_at(data_offset_at) + (resident ? 0 : hive_base);
    }
    if (!visit(value)) break;
  }
  return true;
}

bool find_value(const reg_hive& hive, uint32_t nk_offset, std::string_view name,
                read_allowance& allowance, reg_value& value) {
  reg_assert(nk_offset != 0, "pValueName && nk_offset", 2022);
  bool found = false;
  enum_values(hive, nk_offset, allowance, [&](const reg_value& candidate) {
    found = candidate.is_named(name) && candidate.name() == name;
    if (found) value = candidate;
    return !found;
  });
  return found;
}

bool read_value_data(const reg_hive& hive, const reg_value& value, read_allowance& allowance,
                     value_bytes& bytes) {
  bytes.data = bytes.data_and_slack = {};
  bytes.joined.clear();
  if (value.vk.empty() || cell_size(value.vk) > largest_vk_cell) return false;
  const uint32_t stored_size = value.vk.u32_at(data_size_at);
  const uint32_t wanted = stored_size & size_mask;
  if ((stored_size & resident_bit) != 0) {
    const bool fits = (stored_size & ~resident_bit) <= most_resident_bytes;
    return give_plain(value.vk.clip(data_offset_at, fits ? wanted : 0), allowance, bytes);
  }
  const auto data_cell = hive.cell_at(value.data_position);
  const auto data = hive.cell_at(value.data_position + content_at);
  if (!data_cell || !data) return false;
  const int64_t position = static_cast<int32_t>(value.data_position);
  const uint32_t masked_size = cell_size(*data_cell) & size_mask;
  if (masked_size != 0 && position >= 1 && position + masked_size > hive.size()) return false;
  if (wanted >= data_limit) return true;
  const uint32_t segments_pos = data_cell->u32_at(db_cell_fields::segment_list_at) + hive_base;
  if (stored_size > largest_plain_data && data->text_at(0, "db") && hive.cell_at(segments_pos)) {
    const uint32_t count = data_cell->u16_at(db_cell_fields::segment_count_at);
    const byte_view segments =
        hive.bytes_at(segments_pos + content_at, uint64_t{cell::offset_bytes} * count);
    return join_segments(hive, segments, count, wanted, allowance, bytes);
  }
  return give_plain(hive.bytes_at(value.data_position + content_at, wanted), allowance, bytes);
}

}  // namespace ovrik
