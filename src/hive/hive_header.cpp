#include "hive/hive_header.h"

#include "base/utf16.h"

namespace ovrik {

uint32_t hive_base = 0x1000;

namespace {

// The base block (registry "regf" header).
constexpr size_t root_cell_at = 0x24;  // relative to the first bin
constexpr size_t file_name_at = 0x30;  // UTF-16LE
constexpr size_t file_name_bytes = 64;
constexpr size_t log_marker_at = 0x200;
constexpr size_t second_bin_probe_at = 0x230;
constexpr size_t usual_first_bin_at = 0x1000;

// A bin header (registry "hbin").
constexpr std::string_view bin_signature = "hbin";
constexpr size_t bin_offset_at = 4;  // of this bin from the first one

constexpr uint64_t largest_size = 0x7FFFFFFF;  // sizes are signed 32-bit numbers

bool is_size_of_hive(uint64_t size) { return size >= least_hive_bytes && size <= largest_size; }

/// The first place that holds a bin, found by looking at every stride boundary with a shift of up
/// to 3 bytes. False: none before the last 4 bytes.
bool find_first_bin(byte_view bytes, size_t stride, size_t& place) {
  for (size_t boundary = 0; boundary < bytes.size() - 4; boundary += stride) {
    for (size_t at = boundary; at < boundary + 4 && at < bytes.size() - 4; ++at) {
      if (!bytes.text_at(at, bin_signature)) continue;
      place = at;
      return true;
    }
  }
  return false;
}

bool has_base_block(byte_view bytes) { return bytes.text_at(0, "regf"); }

bool has_usual_bin(byte_view bytes) {
  return bytes.text_at(usual_first_bin_at, bin_signature) ||
         bytes.text_at(second_bin_probe_at, bin_signature);
}

/// Sets `hive_base`. False: there is no sign of a bin.
bool find_hive_base(byte_view bytes) {
  if (has_usual_bin(bytes)) {
    hive_base = usual_first_bin_at;
    return true;
  }
  const bool new_log = bytes.text_at(log_marker_at, "HvLE");
  const bool is_log = new_log || bytes.text_at(log_marker_at, "DIRT");
  size_t place = 0;
  if (!find_first_bin(bytes, new_log ? 8 : 512, place)) return false;
  const bool moved = bytes.u32_at(place + bin_offset_at) == 0 &&
                     bytes.size() - place > least_hive_bytes && !is_log;
  hive_base = static_cast<uint32_t>(moved ? place : usual_first_bin_at);
  return true;
}

/// What follows the last backslash of the UTF-16LE path in `field`, or the last slash of one
/// without a backslash, as UTF-8.
std::string last_component_of(byte_view field) {
  size_t units = 0;
  size_t behind_backslash = 0;
  size_t behind_slash = 0;
  for (; units < field.size() / 2 && field.u16_at(2 * units) != 0; ++units) {
    if (field.u16_at(2 * units) == '\\') behind_backslash = units + 1;
    if (field.u16_at(2 * units) == '/') behind_slash = units + 1;
  }
  const size_t begin = behind_backslash != 0 ? behind_backslash : behind_slash;
  const std::string last = utf16_text(field.clip(2 * begin, 2 * (units - begin)));
  return last == ".." ? "." : last;
}

}  // namespace

bool needs_bin_search(byte_view start) { return has_base_block(start) && !has_usual_bin(start); }

bool check_hive_header(byte_view bytes, uint64_t hive_size, uint32_t& root_offset,
                       std::string& name) {
  if (!is_size_of_hive(bytes.size()) || !is_size_of_hive(hive_size) || !has_base_block(bytes) ||
      !find_hive_base(bytes)) {
    return false;
  }
  root_offset = bytes.u32_at(root_cell_at) + hive_base;
  name = last_component_of(bytes.clip(file_name_at, file_name_bytes));
  return true;
}

}  // namespace ovrik
