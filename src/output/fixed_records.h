// The two fixed records: the log2timeline row and the body-file row.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "output/row_writer.h"

namespace ovrik {

/// The slots of a record's times, in their order.
enum time_slot : size_t { modified_slot, accessed_slot, changed_slot, born_slot, time_slots };

/// Whole seconds since 1970 of a FILETIME, 0 for one that is 0 or has its top bit set.
uint64_t slot_seconds(uint64_t filetime);

/// One file as the log2timeline form tells it: a row for each of its different times.
struct timeline_record {
  explicit timeline_record(const row_settings& settings);

  std::array<uint64_t, time_slots> seconds{};  ///< since 1970; 0 for none
  std::array<std::string, time_slots> labels;
  std::string source;
  std::string sourcetype;  ///< the title of the section
  std::string user;
  std::string host;
  std::string short_text;
  std::string desc;
  uint32_t version = 2;
  std::string filename;
  std::string inode;
  std::string notes;
  std::string format;
  std::string extra;
};

/// Writes the rows of a record in ascending time, and the header in front if it is due. A record
/// without a valid time has no row.
void write_timeline_row(row_writer& writer, const timeline_record& record);

/// One file as the body-file form tells it.
struct body_record {
  std::string name;
  uint64_t size = 0;
  std::array<uint64_t, time_slots> seconds{};  ///< since 1970; 0 for none
};

/// Writes the row of a record, and the header in front if it is due.
void write_body_row(row_writer& writer, const body_record& record);

}  // namespace ovrik
