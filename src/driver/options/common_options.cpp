// The table of the common options. Its order is the order of reading and is binding: an option
// takes the argument behind it even if that looks like an option which is read later, and among
// the output forms the one read last wins.
#include "base/number_text.h"
#include "base/text.h"
#include "driver/options/option_reading.h"
#include "driver/options/path_variables.h"
#include "output/lv_time.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

enum class option_form {
  flag,
  value,
  repeated_value,  ///< may stand several times
};

struct common_option {
  const char* name;
  option_form form;
  option_effect effect;
  bool (*is_read)(const run_options& options) = nullptr;  ///< when not always
};

bool choose_form(option_reading& reading, row_form form, const char* separator) {
  reading.options.rows.form = form;
  set_csv_separator(reading.options.rows, separator);
  return true;
}

bool accept(option_reading& /*reading*/, const std::string& /*value*/) { return true; }

bool refuse(option_reading& reading, const std::string& /*value*/) {
  reading.words += "This option is not offered in this build\n";
  return false;
}

bool take_diagnostics_file(option_reading& reading, const std::string& value) {
  reading.options.diagnostics = {.given = true, .path = value};
  return true;
}

bool take_results_file(option_reading& reading, const std::string& value) {
  reading.options.results = {.given = true,
                             .path = with_host_separators(expand_path_variables(value))};
  return true;
}

bool take_filter(option_reading& reading, const std::string& value) {
  std::vector<file_filter> filters;
  parse_filter(filters, value);
  std::vector<file_filter>& all = reading.options.list.filters;
  all.insert(all.end(), filters.begin(), filters.end());
  std::string unread;
  take_option("-filter_path", unread, reading.args);
  return true;
}

bool skip_filter(option_reading& reading, const std::string& /*value*/) {
  std::string unread;
  take_option("-filter_path", unread, reading.args);
  return true;
}

/// Takes a date or time format of a plausible shape; says so if it is not.
bool take_format(std::string& format, const std::string& value, bool plausible,
                 std::string& words) {
  if (plausible) {
    format = lower_ascii(value);
  } else {
    words += "invalid " + value + ", using default format\n";
  }
  return true;
}

bool take_date_format(option_reading& reading, const std::string& value) {
  const bool plausible = value.size() == 8 || value.size() == 10;
  return take_format(reading.date_format, value, plausible, reading.words);
}

bool take_time_format(option_reading& reading, const std::string& value) {
  const bool length_known = value.size() == 8 || (value.size() >= 12 && value.size() <= 18);
  const bool plausible = length_known && value.find(':') != std::string::npos;
  return take_format(reading.time_format, value, plausible, reading.words);
}

bool quote_fields(option_reading& reading, const std::string& /*value*/) {
  row_settings& rows = reading.options.rows;
  rows.quoted_csv = true;
  if (rows.csv_separator.find('\t') == std::string::npos) {
    rows.csv_separator = trim(rows.csv_separator);
  }
  rows.pad_columns = false;
  return true;
}

bool drop_blanks(option_reading& reading, const std::string& /*value*/) {
  row_settings& rows = reading.options.rows;
  rows.tight_csv = true;
  rows.pad_columns = false;
  remove_all(rows.csv_separator, ' ');
  return true;
}

constexpr option_form flag = option_form::flag;
constexpr option_form with_value = option_form::value;
constexpr option_form repeated = option_form::repeated_value;

constexpr auto diagnostics_given = [](const run_options& o) { return o.diagnostics.given; };
constexpr auto no_results_file = [](const run_options& o) { return !o.results.given; };

// The short names keep the table readable: r the command line that is being read, v the value.
using line = option_reading&;
using text = const std::string&;

const common_option common_options[] = {
    {"-pair_datetime", flag, [](line r, text) { return r.options.rows.pair_datetime = true; }},
    {"-diags", with_value, take_diagnostics_file},
    {"-l2", flag, accept, diagnostics_given},
    {"-l3", flag, accept, diagnostics_given},
    {"-csv", flag,
     [](line r, text) {
       r.options.rows.tight_csv = !r.options.rows.pair_datetime;
       return choose_form(r, row_form::csv, ",");
     }},
    {"-csvgen", flag,
     [](line r, text) {
       r.options.rows.tight_csv = r.options.rows.csvgen_given = true;
       return choose_form(r, row_form::csvgen, ",");
     }},
    {"-csvl2t", flag, [](line r, text) { return choose_form(r, row_form::l2t, ","); }},
    {"-bodyfile", flag, [](line r, text) { return choose_form(r, row_form::bodyfile, "|"); }},
    {"-xml", flag, [](line r, text) { return choose_form(r, row_form::xml, ""); }},
    {"-multiline", flag, [](line r, text) { return choose_form(r, row_form::multiline, ""); }},
    {"-alias", with_value,
     [](line r, text v) {
       return add_file_aliases(r.options.aliases, expand_path_variables(v), r.words);
     }},
    {"-aliaspath", with_value,
     [](line r, text v) {
       return add_path_aliases(r.options.aliases, expand_path_variables(v), r.words);
     }},
    {"-gzip", flag, accept},
    {"-zlib", flag, accept},
    {"-threads", with_value, accept},
    {"-zlibex", with_value, accept},
    {"-sqlite_log", with_value, refuse},
    {"-sqlite", with_value, refuse},
    {"-signal", with_value, [](line r, text v) { return r.options.signal_name = v, true; }},
    {"-hostname", with_value, [](line r, text v) { return r.options.rows.host_name = v, true; }},
    {"-split_pathfile", flag, accept},
    {"-username", with_value, [](line r, text v) { return r.options.rows.user_name = v, true; }},
    {"-cpuinst", with_value, accept},
    {"-cpu", with_value, accept},
    {"-fragment_files", with_value, accept},
    {"-separate_files", flag, accept},
    {"-out", with_value, take_results_file},
    {"-outfile", with_value, take_results_file, no_results_file},
    {"-outdir", with_value, accept},
    {"-enumdir", with_value,
     [](line r, text v) {
       r.options.list.folder = expand_path_variables(v);
       return r.options.list.from_folder = true;
     }},
    {"-num_subdirs", with_value,
     [](line r, text v) { return parse_u32(v, r.options.list.num_subdirs), true; }},
    {"-profile", flag, [](line r, text) { return r.options.profile = true; }},
    {"-pipe", flag, [](line r, text) { return r.options.list.from_standard_input = true; }},
    {"-filter_skip", repeated, skip_filter},
    {"-filter", repeated, take_filter},
    {"-filter_sig", repeated,
     [](line r, text v) { return append_signature_filter(r.options.list.filters, v), true; }},
    {"-cmd_start_time", with_value,
     [](line r, text v) { return take_start_time(r.options.list.window, v, r.words); }},
    {"-cmd_stop_time", with_value,
     [](line r, text v) { return take_stop_time(r.options.list.window, v, r.words); }},
    {"-base10", flag, [](line r, text) { return r.options.rows.hex_numbers = false, true; }},
    {"-base16", flag, [](line r, text) { return r.options.rows.hex_numbers = true; }},
    {"-csv_separator", with_value,
     [](line r, text v) { return set_csv_separator(r.options.rows, v), true; }},
    {"-enable_quoted_csv_fields", flag, quote_fields},
    {"-no_whitespace", flag, drop_blanks},
    {"-dateformat", with_value, take_date_format},
    {"-timeformat", with_value, take_time_format},
    {"-verbose", flag, accept},
    {"-v", flag, accept},
    {"-quiet", flag, [](line r, text) { return r.options.show_progress = false, true; }},
    {"-logs", flag, [](line r, text) { return r.options.with_logs = true; }},
};

bool read_option(const common_option& option, option_reading& reading) {
  if (option.is_read != nullptr && !option.is_read(reading.options)) return true;
  std::string value;
  if (option.form == flag) {
    return !take_flag(option.name, reading.args) || option.effect(reading, value);
  }
  while (take_option(option.name, value, reading.args)) {
    if (!option.effect(reading, value)) return false;
    if (option.form != repeated) break;
  }
  return true;
}

}  // namespace

bool read_common_options(option_reading& reading) {
  for (const common_option& option : common_options) {
    if (!read_option(option, reading)) return false;
  }
  row_settings& rows = reading.options.rows;
  compile_date_time(rows.time_format, reading.date_format, reading.time_format, rows.pair_datetime);
  return true;
}

}  // namespace ovrik
