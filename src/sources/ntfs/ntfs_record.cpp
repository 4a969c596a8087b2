#include "sources/ntfs/ntfs_record.h"

#include "base/utf16.h"

namespace ovrik {

namespace {

// File record header (FILE_RECORD_SEGMENT_HEADER). It begins with a MULTI_SECTOR_HEADER, and so
// does an index block.
constexpr size_t update_sequence_offset_at = 0x04;  // u16
constexpr size_t update_sequence_count_at = 0x06;   // u16, words; the first is the mark itself
constexpr size_t sequence_at = 0x10;                // u16
constexpr size_t first_attribute_at = 0x14;         // u16
constexpr size_t flags_at = 0x16;                   // u16
constexpr uint16_t in_use_flag = 0x0001;
constexpr size_t allocated_bytes_at = 0x1C;  // u32
constexpr size_t base_reference_at = 0x20;   // u64

// What every file record has. NTFS 3.0 (Windows 2000) had no entry number in its header, so that
// the update sequence stands at 42 there; Windows XP and later have it at 48.
constexpr uint32_t least_update_sequence_offset = 42;
constexpr uint32_t usual_update_sequence_offset = 48;
constexpr uint32_t most_update_sequence_words = 9;
constexpr uint32_t largest_first_attribute = 72;

constexpr uint32_t update_sequence_stride = 512;  // bytes that one word protects
constexpr uint32_t least_record_bytes = 512;
constexpr uint32_t largest_record_bytes = 0x4000;

// $ATTRIBUTE_LIST entry (ATTRIBUTE_LIST_ENTRY).
constexpr size_t list_length_at = 0x04;     // u16
constexpr size_t list_reference_at = 0x10;  // u64
constexpr size_t list_id_at = 0x18;         // u16
constexpr size_t list_entry_bytes = 0x1A;   // without a name

constexpr size_t least_attribute_bytes = 0x10;

}  // namespace

bool has_file_mark(byte_view record) { return record.text_at(0, "FILE"); }

bool is_file_record(byte_view record) {
  const uint32_t offset = record.u16_at(update_sequence_offset_at);
  const uint32_t words = record.u16_at(update_sequence_count_at);
  const uint32_t first_attribute = record.u16_at(first_attribute_at);
  const bool in_header_gap =
      offset >= least_update_sequence_offset && offset + 2 * words <= first_attribute;
  return has_file_mark(record) && (offset == usual_update_sequence_offset || in_header_gap) &&
         words <= most_update_sequence_words && first_attribute <= largest_first_attribute;
}

bool is_record_size(uint32_t bytes) {
  return bytes >= least_record_bytes && bytes <= largest_record_bytes;
}

uint32_t fixed_up_bytes(byte_view record) {
  const uint32_t words = record.u16_at(update_sequence_count_at);
  return words > 1 ? (words - 1) * update_sequence_stride : 0;
}

bool apply_fixups(std::vector<uint8_t>& block, uint32_t bytes_per_sector) {
  constexpr uint32_t word_bytes = 2;
  const byte_view view(block);
  if (!is_file_record(view) && !view.text_at(0, "INDX")) return false;
  const uint32_t sequence_offset = view.u16_at(update_sequence_offset_at);
  const uint32_t count = view.u16_at(update_sequence_count_at);
  if (count < 2) return true;
  const auto size = static_cast<uint32_t>(block.size());
  const uint32_t implied = size / (count - 1);
  const bool whole = implied * (count - 1) == size && implied >= update_sequence_stride;
  const uint32_t stride = whole ? implied : bytes_per_sector;
  if (stride < word_bytes) return true;
  for (uint32_t i = 1; i < count && uint64_t{i} * stride <= size; ++i) {
    const uint32_t word_at = sequence_offset + word_bytes * i;
    if (!view.has(word_at, word_bytes)) break;
    const uint16_t word = view.u16_at(word_at);
    block[i * stride - 2] = static_cast<uint8_t>(word);
    block[i * stride - 1] = static_cast<uint8_t>(word >> 8);
  }
  return true;
}

uint16_t record_sequence(byte_view record) { return record.u16_at(sequence_at); }

bool record_in_use(byte_view record) { return (record.u16_at(flags_at) & in_use_flag) != 0; }

uint32_t record_allocated_bytes(byte_view record) { return record.u32_at(allocated_bytes_at); }

uint64_t record_base_reference(byte_view record) { return record.u64_at(base_reference_at); }

std::string ntfs_attribute::name() const {
  const uint32_t length = 2U * bytes.u8_at(attribute_header::name_length_at);
  const uint32_t offset = bytes.u16_at(attribute_header::name_offset_at);
  return bytes.has(offset, length) ? utf16_text(bytes.clip(offset, length)) : std::string();
}

std::vector<ntfs_attribute> attributes_of(byte_view record) {
  std::vector<ntfs_attribute> attributes;
  uint64_t at = record.u16_at(first_attribute_at);
  while (record.has(at, least_attribute_bytes) && record.u32_at(at) != ntfs_type::end) {
    const uint32_t length = record.u32_at(at + attribute_header::record_length_at);
    if (length < least_attribute_bytes || !record.has(at, length)) break;
    attributes.push_back({record.clip(at, length)});
    at += length;
  }
  return attributes;
}

std::vector<attribute_list_entry> attribute_list_entries(byte_view list) {
  std::vector<attribute_list_entry> entries;
  for (uint64_t at = 0; list.has(at, list_entry_bytes);) {
    const uint32_t length = list.u16_at(at + list_length_at);
    const uint64_t reference = list.u64_at(at + list_reference_at);
    if (length == 0 || !list.has(at, length)) break;
    entries.push_back({list.u32_at(at), reference & entry_mask,
                       static_cast<uint16_t>(reference >> reference_sequence_shift),
                       list.u16_at(at + list_id_at)});
    at += length;
  }
  return entries;
}

}  // namespace ovrik
