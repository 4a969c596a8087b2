// Dates and times that a user types, read back into a FILETIME.
#pragma once

#include <cstdint>
#include <string_view>

namespace ovrik {

/// Calendar fields as read from text; only what `parse_date_time` promises is tested.
struct date_time_fields {
  uint32_t year = 0;
  uint32_t month = 0;  ///< at most 12
  uint32_t day = 0;    ///< at most 31
  uint32_t hour = 0;
  uint32_t minute = 0;
  uint32_t second = 0;
  uint32_t millisecond = 0;
};

/// Reads a date whose three parts, separated by `delimiter`, stand in the order that `order` names
/// with the letters Y, M and D, and a time "hour:minute[:second[.fraction]]" with "pm" for the
/// hours behind noon. Two-digit years are those of 1931 to 2030; a month may be a name as
/// `month_name` gives it; an empty `time_text` is midnight. False: either text is malformed.
bool parse_date_time(std::string_view date_text, std::string_view time_text, std::string_view order,
                     char delimiter, date_time_fields& fields);

/// The FILETIME of calendar fields. False, with `filetime` kept: no such day or time of day exists
/// from 1601 to 9999.
bool filetime_of_fields(const date_time_fields& fields, uint64_t& filetime);

}  // namespace ovrik
