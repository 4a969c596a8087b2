// One file record of the MFT: the repair of its sector ends and the walk over its attributes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/byte_view.h"

namespace ovrik {

/// The type codes of attributes (ATTRIBUTE_TYPE_CODE).
namespace ntfs_type {
constexpr uint32_t attribute_list = 0x20;
constexpr uint32_t file_name = 0x30;
constexpr uint32_t data = 0x80;
constexpr uint32_t index_root = 0x90;
constexpr uint32_t index_allocation = 0xA0;
constexpr uint32_t end = 0xFFFFFFFF;
}  // namespace ntfs_type

// A reference to a record (MFT_SEGMENT_REFERENCE) is its entry number and its sequence number.
constexpr uint64_t entry_mask = 0xFFFFFFFFFFFF;
constexpr uint32_t reference_sequence_shift = 48;

/// Offsets in the header of an attribute (ATTRIBUTE_RECORD_HEADER).
namespace attribute_header {
constexpr size_t type_code_at = 0x00;      // u32
constexpr size_t record_length_at = 0x04;  // u32
constexpr size_t form_code_at = 0x08;      // u8; 0: resident
constexpr size_t name_length_at = 0x09;    // u8, UTF-16 units
constexpr size_t name_offset_at = 0x0A;    // u16
constexpr size_t flags_at = 0x0C;          // u16
constexpr size_t instance_at = 0x0E;       // u16
// Of a resident attribute.
constexpr size_t value_length_at = 0x10;  // u32
constexpr size_t value_offset_at = 0x14;  // u16
// Of a non-resident attribute. All sizes are in bytes.
constexpr size_t lowest_vcn_at = 0x10;            // u64
constexpr size_t mapping_pairs_offset_at = 0x20;  // u16
constexpr size_t compression_unit_at = 0x22;      // u8; 2 to its power clusters
constexpr size_t allocated_length_at = 0x28;      // u64
constexpr size_t file_size_at = 0x30;             // u64
constexpr size_t valid_data_length_at = 0x38;     // u64
constexpr size_t total_allocated_at = 0x40;       // u64
}  // namespace attribute_header

/// True if the bytes begin as a file record does ("FILE").
bool has_file_mark(byte_view record);

/// True if `record` is a file record as the system writes it: "FILE", the update sequence at 48 or
/// anywhere between the header, which ends at 42, and the first attribute, and of at most 9 words;
/// the first attribute below 73.
bool is_file_record(byte_view record);

/// Puts back the last two bytes of every sector of a file record or an index block ("FILE" or
/// "INDX"), which its update sequence array keeps (MULTI_SECTOR_HEADER). The sectors are as long as
/// the count of the array implies, or else `bytes_per_sector`. The words that would show a write
/// that was cut off are not compared. False: it is neither record nor block.
bool apply_fixups(std::vector<uint8_t>& block, uint32_t bytes_per_sector);

/// The bytes that the update sequence array of a record protects, by its count of sectors of 512
/// bytes; 0 if it protects none.
uint32_t fixed_up_bytes(byte_view record);

/// True for a size in bytes that a file record can have.
bool is_record_size(uint32_t bytes);

// Fields of a file record's header (FILE_RECORD_SEGMENT_HEADER). 0 if they do not lie inside.
uint16_t record_sequence(byte_view record);
bool record_in_use(byte_view record);
uint32_t record_allocated_bytes(byte_view record);
uint64_t record_base_reference(byte_view record);

/// One attribute within a record.
struct ntfs_attribute {
  byte_view bytes;  ///< the whole attribute, header first

  uint32_t type() const { return bytes.u32_at(attribute_header::type_code_at); }
  bool non_resident() const { return bytes.u8_at(attribute_header::form_code_at) != 0; }
  uint16_t flags() const { return bytes.u16_at(attribute_header::flags_at); }
  uint16_t id() const { return bytes.u16_at(attribute_header::instance_at); }
  std::string name() const;  ///< UTF-8; empty if it has none or it does not fit

  /// The value of a resident attribute.
  byte_view content() const {
    return bytes.clip(bytes.u16_at(attribute_header::value_offset_at),
                      bytes.u32_at(attribute_header::value_length_at));
  }

  // The fields of a non-resident attribute; sizes in bytes.
  uint64_t first_vcn() const { return bytes.u64_at(attribute_header::lowest_vcn_at); }
  byte_view runs() const {
    return bytes.from(bytes.u16_at(attribute_header::mapping_pairs_offset_at));
  }
  uint8_t compression_unit() const { return bytes.u8_at(attribute_header::compression_unit_at); }
  uint64_t allocated_size() const { return bytes.u64_at(attribute_header::allocated_length_at); }
  uint64_t real_size() const { return bytes.u64_at(attribute_header::file_size_at); }
  uint64_t initialized_size() const { return bytes.u64_at(attribute_header::valid_data_length_at); }
  uint64_t compressed_size() const { return bytes.u64_at(attribute_header::total_allocated_at); }
};

/// The attributes of a record in their order, up to the end mark or the first length that is 0 or
/// does not fit.
std::vector<ntfs_attribute> attributes_of(byte_view record);

/// One entry of an $ATTRIBUTE_LIST (ATTRIBUTE_LIST_ENTRY): where a piece of the file stands.
struct attribute_list_entry {
  uint32_t type = 0;
  uint64_t entry = 0;     ///< the record that holds the attribute
  uint16_t sequence = 0;  ///< the sequence number that the record had
  uint16_t id = 0;        ///< of the attribute there
};

/// The entries of a list's bytes, up to the first whose length is 0 or does not fit.
std::vector<attribute_list_entry> attribute_list_entries(byte_view list);

}  // namespace ovrik
