#include "shim/shim_rows.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "output/field_row.h"
#include "output/fixed_records.h"
#include "shim/shim_columns.h"
#include "shim/shim_layouts.h"

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
std::string path_with_order(const shim_cache_entry& entry, const shim_layout_row& layout) {
  if (!layout.has_use_order()) return entry.path_raw;
  return entry.path_raw + " (sorted# " + std::to_string(entry.order) + ")";
}

/// The words of a timeline row for what has no field of its own there.
std::string extra_words(const shim_cache_entry& entry, const shim_layout_row& layout,
                        bool hex_numbers) {
  if (layout.has_file_size) {
    if (entry.file_size == 0) return {};
    return hex_numbers ? "File size: 0x" + hex_text(entry.file_size, 8)
                       : "File size:" + decimal_text(entry.file_size);
  }
  if (!layout.has_flags) return {};
  const std::string meaning = shim_flags_meaning(entry.flags1);
  return "Flags1: 0x" + hex_text(entry.flags1, 8) + "; Flags2: 0x" + hex_text(entry.flags2, 8) +
         (meaning.empty() ? "" : "; [" + meaning + "]");
}

/// What the rows of one cache have in common.
struct row_context {
  row_writer& writer;
  const cache_section& section;
  const shim_settings& settings;
  const shim_layout_row& layout;  ///< all valid entries of one cache have one
};

void write_cells(const row_context& context, const shim_cache_entry& entry) {
  const auto& [writer, section, settings, layout] = context;
  write_row(writer, shim_row(entry, layout, section, settings, writer));
}

void write_timeline(const row_context& context, const shim_cache_entry& entry) {
  const auto& [writer, section, settings, layout] = context;
  timeline_record record(writer.settings());
  record.seconds[modified_slot] = slot_seconds(entry.modified_time);
  record.seconds[changed_slot] = slot_seconds(entry.update_time);
  record.labels = {"File Modified", "Last Accessed", "RegKey Updated", "Created"};
  record.source = "REG";
  record.sourcetype = section.title;
  record.short_text = entry.path_raw;
  record.desc = path_with_order(entry, layout);
  if (settings.inc_slack && entry.in_slack) record.notes = "Slack entry; ";
  record.notes += extra_words(entry, layout, writer.settings().hex_numbers);
  record.filename = section.hive_location;
  record.extra = "entry# " + decimal_text(entry.entry_number);
  write_timeline_row(writer, record);
}

void write_body(const row_context& context, const shim_cache_entry& entry) {
  const auto& [writer, section, settings, layout] = context;
  body_record record;
  record.name =
      "entry# " + decimal_text(entry.entry_number) + "; " + path_with_order(entry, layout);
  if (!section.title.empty()) record.name += " (" + section.title + ")";
  record.size = entry.file_size;
  record.seconds[modified_slot] = slot_seconds(entry.modified_time);
  record.seconds[changed_slot] = slot_seconds(entry.update_time);
  write_body_row(writer, record);
}

using entry_writer = void (*)(const row_context& context, const shim_cache_entry& entry);

/// What writes an entry in a form.
entry_writer writer_of(row_form form) {
  switch (form) {
    case row_form::l2t:
      return write_timeline;
    case row_form::bodyfile:
      return write_body;
    default:
      return write_cells;
  }
}

void write_shim_rows(const row_context& context, const shim_cache_results& results) {
  row_writer& writer = context.writer;
  writer.write_heading();
  if (writer.needs_columns()) {
    writer.set_columns(
        shim_columns(context.layout, context.section, context.settings, writer.settings()));
  }
  const entry_writer write_entry = writer_of(writer.settings().form);
  for (const shim_cache_entry* entry :
       entries_in_row_order(results, context.settings.sort_by_name)) {
    write_entry(context, *entry);
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

bool output_shim_cache(row_writer& writer, const cache_section& section,
                       const shim_cache_results& results, const shim_settings& settings,
                       byte_view data) {
  if (results.empty()) return false;
  if (settings.raw_mode) {
    dump_shim_slack(writer.out(), results, data);
  } else {
    write_shim_rows({writer, section, settings, layout_facts(results.front().layout)}, results);
  }
  return true;
}

}  // namespace ovrik
