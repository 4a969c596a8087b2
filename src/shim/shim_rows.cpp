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

using step_list = std::vector<shim_step>;

/// Puts a list into the order of the paths; equal ones stay in the order of the walk.
void sort_by_name(step_list& steps, const shim_cache_results& results) {
  using keyed_step = std::pair<std::string, shim_step>;
  std::vector<keyed_step> keyed;
  keyed.reserve(steps.size());
  for (const shim_step& step : steps) keyed.emplace_back(path_key(results.entry_at(step)), step);
  std::sort(keyed.begin(), keyed.end(), [](const keyed_step& left, const keyed_step& right) {
    const int order = left.first.compare(right.first);
    return order != 0 ? order < 0 : left.second.number < right.second.number;
  });
  std::transform(keyed.begin(), keyed.end(), steps.begin(),
                 [](const keyed_step& step) { return step.second; });
}

/// A number with zeros behind it up to ten digits, or behind the five that it has at least.
uint64_t filled_number(uint32_t number) {
  constexpr uint64_t least_of_six_digits = 100'000;
  constexpr uint64_t least_of_ten_digits = 1'000'000'000;
  if (number < least_of_six_digits) return number * least_of_six_digits;
  uint64_t filled = number;
  while (filled < least_of_ten_digits) filled *= 10;
  return filled;
}

/// Puts a list into the order that the numbers have as texts with zeros up to five digits, by which
/// "100000" comes before "99999".
void sort_by_number_text(step_list& steps) {
  std::sort(steps.begin(), steps.end(), [](const shim_step& left, const shim_step& right) {
    const uint64_t left_filled = filled_number(left.number);
    const uint64_t right_filled = filled_number(right.number);
    return left_filled != right_filled ? left_filled < right_filled : left.number < right.number;
  });
}

/// The entries in the order in which their rows go out.
step_list steps_in_row_order(const shim_cache_results& results, bool by_name) {
  constexpr uint32_t most_with_five_digits = 99999;  // up to there the walk has the order
  step_list steps = results.steps();
  if (by_name) {
    sort_by_name(steps, results);
  } else if (steps.back().number > most_with_five_digits) {
    sort_by_number_text(steps);
  }
  return steps;
}

/// The path as the fixed records show it, with its place in the use order if the layout has one.
std::string path_with_order(const shim_cache_entry& entry, const shim_layout_row& layout) {
  if (!layout.has_use_order()) return path_raw(entry);
  return path_raw(entry) + " (sorted# " + std::to_string(entry.order) + ")";
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
  record.short_text = path_raw(entry);
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
  for (const shim_step& step : steps_in_row_order(results, context.settings.sort_by_name)) {
    write_entry(context, results.entry_at(step));
  }
}

/// Writes the numbers of the entries of a raw listing in their order in the buffer.
void dump_shim_slack(std::ostream& out, const shim_cache_results& results, byte_view data) {
  if (!data.empty()) out << entry_rule << "\nHeader information\n\n";
  for (const shim_step& step : results.steps()) {
    std::string number;
    append_padded_right(number, decimal_text(step.number), 4);
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
    write_shim_rows({writer, section, settings, results.layout()}, results);
  }
  return true;
}

}  // namespace ovrik
