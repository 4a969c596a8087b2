#include "shim/shim_rows.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "output/field_row.h"
#include "output/fixed_records.h"
#include "shim/shim_columns.h"

namespace ovrik {

namespace {

constexpr std::string_view entry_rule = "--------------------------------------------";

using entry_list = std::vector<const shim_cache_entry*>;

/// Puts a list into the order of keys; entries of one key stay in the order of the walk.
template <typename key_maker>
void sort_by_key(entry_list& entries, key_maker key_of) {
  using keyed_entry = std::pair<std::string, const shim_cache_entry*>;
  std::vector<keyed_entry> keyed;
  keyed.reserve(entries.size());
  for (const shim_cache_entry* entry : entries) keyed.emplace_back(key_of(*entry), entry);
  std::stable_sort(
      keyed.begin(), keyed.end(),
      [](const keyed_entry& left, const keyed_entry& right) { return left.first < right.first; });
  std::transform(keyed.begin(), keyed.end(), entries.begin(),
                 [](const keyed_entry& entry) { return entry.second; });
}

/// The valid entries in the order in which their rows go out.
entry_list entries_in_row_order(const shim_cache_results& results, bool by_name) {
  constexpr uint32_t most_with_five_digits = 99999;
  entry_list entries;
  entries.reserve(results.size());
  for (const shim_cache_entry& entry : results) {
    if (entry.valid) entries.push_back(&entry);
  }
  if (by_name) {
    sort_by_key(entries, path_key);
  } else if (results.back().entry_number > most_with_five_digits) {
    // As texts with zeros up to five digits, by which "100000" comes before "99999"; up to there
    // the walk has the order.
    sort_by_key(entries,
                [](const shim_cache_entry& entry) { return decimal_text(entry.entry_number, 5); });
  }
  return entries;
}

/// The path as the fixed records show it, with its place in the use order if the layout has one.
std::string path_with_order(const shim_cache_entry& entry, shim_layout layout) {
  if (layout != shim_layout::xp) return entry.path_raw;
  return entry.path_raw + " (sorted# " + std::to_string(entry.order) + ")";
}

/// The words of a timeline row for what has no field of its own there.
std::string extra_words(const shim_cache_entry& entry, shim_layout layout, bool hex_numbers) {
  if (has_file_size(layout)) {
    if (entry.file_size == 0) return {};
    return hex_numbers ? "File size: 0x" + hex_text(entry.file_size, 8)
                       : "File size:" + decimal_text(entry.file_size);
  }
  if (!has_flags(layout)) return {};
  const std::string meaning = shim_flags_meaning(entry.flags1);
  return "Flags1: 0x" + hex_text(entry.flags1, 8) + "; Flags2: 0x" + hex_text(entry.flags2, 8) +
         (meaning.empty() ? "" : "; [" + meaning + "]");
}

void write_timeline(std::ostream& out, const shim_cache_entry& entry, shim_layout layout,
                    shim_settings& settings) {
  timeline_record record(settings);
  record.seconds[modified_slot] = slot_seconds(entry.modified_time);
  record.seconds[changed_slot] = slot_seconds(entry.update_time);
  record.labels = {"File Modified", "Last Accessed", "RegKey Updated", "Created"};
  record.source = "REG";
  record.short_text = entry.path_raw;
  record.desc = path_with_order(entry, layout);
  if (settings.inc_slack && entry.in_slack) record.notes = "Slack entry; ";
  record.notes += extra_words(entry, layout, settings.hex_numbers);
  record.filename = aliased_hive_location(settings);
  record.extra = "entry# " + decimal_text(entry.entry_number);
  write_timeline_row(out, record, settings);
}

void write_body(std::ostream& out, const shim_cache_entry& entry, shim_layout layout,
                shim_settings& settings) {
  body_record record;
  record.name =
      "entry# " + decimal_text(entry.entry_number) + "; " + path_with_order(entry, layout);
  if (!settings.artifact_title.empty()) record.name += " (" + settings.artifact_title + ")";
  record.size = entry.file_size;
  record.seconds[modified_slot] = slot_seconds(entry.modified_time);
  record.seconds[changed_slot] = slot_seconds(entry.update_time);
  write_body_row(out, record, settings);
}

void write_shim_rows(std::ostream& out, const shim_cache_results& results,
                     shim_settings& settings) {
  if (settings.section_headers && !settings.section_text.empty()) {
    out << settings.section_text << '\n';
    settings.section_text.clear();
  }
  // All valid entries of one cache have one layout.
  const shim_layout layout = results.front().layout;
  if (settings.emit_row_header && (settings.form_csv || !has_stream_header(settings))) {
    settings.columns = shim_columns(layout, settings);
    if (!settings.form_multiline) write_column_header(out, settings);
  }
  for (const shim_cache_entry* entry : entries_in_row_order(results, settings.sort_by_name)) {
    if (settings.form_bodyfile) {
      write_body(out, *entry, layout, settings);
    } else if (settings.form_l2t) {
      write_timeline(out, *entry, layout, settings);
    } else {
      write_row(out, shim_row(*entry, layout, settings), settings);
    }
  }
}

/// Writes the numbers of the entries of a raw listing in their order in the buffer.
void dump_shim_slack(std::ostream& out, const shim_cache_results& results, byte_view data) {
  if (!data.empty()) out << entry_rule << "\nHeader information\n\n";
  for (const shim_cache_entry& entry : results) {
    std::string number;
    append_padded_right(number, decimal_text(entry.entry_number), 4);
    out << entry_rule << "\nentry: " << number << "\n\n";
  }
}

}  // namespace

bool output_shim_cache(std::ostream& out, const shim_cache_results& results,
                       shim_settings& settings, byte_view data) {
  if (results.empty()) return false;
  if (settings.raw_mode) {
    dump_shim_slack(out, results, data);
  } else {
    write_shim_rows(out, results, settings);
  }
  return true;
}

}  // namespace ovrik
