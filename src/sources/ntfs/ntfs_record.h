// One file record of the MFT: the repair of its sector ends and the walk over its attributes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/byte_view.h"

namespace ovrik {

/// Attribute type codes.
namespace ntfs_type {
constexpr uint32_t attribute_list = 0x20;
constexpr uint32_t file_name = 0x30;
constexpr uint32_t data = 0x80;
constexpr uint32_t index_root = 0x90;
constexpr uint32_t index_allocation = 0xA0;
constexpr uint32_t end = 0xFFFFFFFF;
}  // namespace ntfs_type

constexpr uint64_t entry_mask = 0xFFFFFFFFFFFF;  ///< entry number in a reference; above: sequence

/// True if `record` is a file record as the system writes it: "FILE", the update sequence at 48 and
/// of at most 9 words, the first attribute below 73.
bool is_file_record(byte_view record);

/// Puts the sector ends of a record or index block ("FILE" or "INDX") back that its update sequence
/// keeps. Sectors are as long as the count of the sequence implies, or else `bytes_per_sector`. The
/// words that mark a torn write are not compared. False: it is neither.
bool apply_fixups(std::vector<uint8_t>& block, uint32_t bytes_per_sector);

/// Sequence number, first attribute, flags and base record of a file record header.
uint16_t record_sequence(byte_view record);
bool record_in_use(byte_view record);
uint64_t record_base_reference(byte_view record);

/// One attribute within a record.
struct ntfs_attribute {
  byte_view bytes;  ///< the whole attribute, header first

  uint32_t type() const { return bytes.u32_at(0x00); }
  bool non_resident() const { return bytes.u8_at(0x08) != 0; }
  uint16_t flags() const { return bytes.u16_at(0x0C); }
  uint16_t id() const { return bytes.u16_at(0x0E); }
  std::string name() const;  ///< UTF-8; empty if it has none or it does not fit

  /// The value of a resident attribute.
  byte_view content() const { return bytes.clip(bytes.u16_at(0x14), bytes.u32_at(0x10)); }

  // The fields of a non-resident attribute.
  uint64_t first_vcn() const { return bytes.u64_at(0x10); }
  byte_view runs() const { return bytes.from(bytes.u16_at(0x20)); }
  uint8_t compression_unit() const { return bytes.u8_at(0x22); }
  uint64_t allocated_size() const { return bytes.u64_at(0x28); }
  uint64_t real_size() const { return bytes.u64_at(0x30); }
  uint64_t initialized_size() const { return bytes.u64_at(0x38); }
  uint64_t compressed_size() const { return bytes.u64_at(0x40); }
};

/// The attributes of a record in their order, up to the end mark or the first length that is 0 or
/// does not fit.
std::vector<ntfs_attribute> attributes_of(byte_view record);

/// One entry of an $ATTRIBUTE_LIST: where a piece of the file stands.
struct attribute_list_entry {
  uint32_t type = 0;
  uint64_t entry = 0;     ///< the record that holds the attribute
  uint16_t sequence = 0;  ///< that the record must have
  uint16_t id = 0;        ///< of the attribute there
};

/// The entries of a list's bytes, up to the first whose length is 0 or does not fit.
std::vector<attribute_list_entry> attribute_list_entries(byte_view list);

}  // namespace ovrik
