// The table of the common options. Its order is the order of reading and is binding: an option
// takes the argument behind it even if that looks like an option which is read later, and among
// the output forms the one read last wins.
#include "driver/options/common_options.h"

#include <memory>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "driver/host/console.h"
#include "driver/options/date_window.h"
#include "driver/options/evidence_guard.h"
#include "driver/options/hive_aliases.h"
#include "driver/options/path_variables.h"
#include "driver/results_file.h"
#include "output/streams.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

/// What an option does with its value (empty for a flag). False: the run must stop.
using option_effect = bool (*)(cmd_params& options, const std::string& value, argument_list& args);

enum class option_form {
  flag,
  value,
  repeated_value,  ///< may stand several times
};

struct common_option {
  const char* name;
  option_form form;
  option_effect effect;
  bool (*is_read)(const cmd_params& options) = nullptr;  ///< when not always
};

/// Makes one output form the only one; `form_csvgen` stays beside a later form.
void choose_form(cmd_params& options, bool row_settings::*form, const char* separator) {
  options.form_csv = false;
  options.form_l2t = false;
  options.form_bodyfile = false;
  options.form_xml = false;
  options.form_multiline = false;
  options.*form = true;
  options.emit_row_header = form != &row_settings::form_xml;
  set_csv_separator(options, separator);
}

bool accept(cmd_params& /*options*/, const std::string& /*value*/, argument_list& /*args*/) {
  return true;
}

bool refuse(cmd_params& /*options*/, const std::string& /*value*/, argument_list& /*args*/) {
  print_message("This option is not offered in this build\n");
  return false;
}

bool open_diagnostics(cmd_params& options, const std::string& value, argument_list& args) {
  if (!is_free_of_evidence(value, args)) return false;
  auto stream = std::make_unique<uni::file_output>(value);
  if (!stream->is_open()) return true;
  options.diag_on = true;
  options.diag_path = value;
  options.diag_stream = std::move(stream);
  *options.diag_stream << "->" << options.command_line << '\n';
  return true;
}

bool take_results_file(cmd_params& options, const std::string& value, argument_list& args) {
  options.out_path = with_host_separators(expand_path_variables(value));
  options.out_file_given = true;
  return is_free_of_evidence(options.out_path, args) && probe_results_file(options.out_path);
}

bool take_filter(cmd_params& options, const std::string& value, argument_list& args) {
  std::vector<file_filter> filters;
  parse_filter(filters, value);
  options.filters.insert(options.filters.end(), filters.begin(), filters.end());
  std::string unread;
  take_option("-filter_path", unread, args);
  return true;
}

bool skip_filter(cmd_params& /*options*/, const std::string& /*value*/, argument_list& args) {
  std::string unread;
  take_option("-filter_path", unread, args);
  return true;
}

/// Takes a date or time format of a plausible shape; says so if it is not.
void take_format(std::string& format, const std::string& value, bool plausible) {
  if (plausible) {
    format = lower_ascii(value);
  } else {
    print_message("invalid %s, using default format\n", value.c_str());
  }
}

bool take_date_format(cmd_params& options, const std::string& value, argument_list& /*args*/) {
  take_format(options.date_format, value, value.size() == 8 || value.size() == 10);
  return true;
}

bool take_time_format(cmd_params& options, const std::string& value, argument_list& /*args*/) {
  const bool length_known = value.size() == 8 || (value.size() >= 12 && value.size() <= 18);
  take_format(options.time_format_text, value,
              length_known && value.find(':') != std::string::npos);
  return true;
}

bool quote_fields(cmd_params& options, const std::string& /*value*/, argument_list& /*args*/) {
  options.quoted_csv = true;
  if (options.csv_separator.find('\t') == std::string::npos) {
    options.csv_separator = trim(options.csv_separator);
  }
  options.pad_columns = false;
  options.sub_separators.from = 0;
  return true;
}

bool drop_blanks(cmd_params& options, const std::string& /*value*/, argument_list& /*args*/) {
  options.tight_csv = true;
  options.pad_columns = false;
  remove_all(options.csv_separator, ' ');
  return true;
}

constexpr option_form flag = option_form::flag;
constexpr option_form with_value = option_form::value;
constexpr option_form repeated = option_form::repeated_value;

constexpr auto diagnostics_open = [](const cmd_params& o) { return o.diag_on; };
constexpr auto results_file_open = [](const cmd_params& o) { return !o.out_file_given; };

// The short parameter names keep the table readable: o the options, v the value.
using text = const std::string&;
using list = argument_list&;

const common_option common_options[] = {
    {"-pair_datetime", flag, [](cmd_params& o, text, list) { return o.pair_datetime = true; }},
    {"-diags", with_value, open_diagnostics},
    {"-l2", flag, [](cmd_params& o, text, list) { return o.diag_level = 2, true; },
     diagnostics_open},
    {"-l3", flag, [](cmd_params& o, text, list) { return o.diag_level = 3, true; },
     diagnostics_open},
    {"-csv", flag,
     [](cmd_params& o, text, list) {
       choose_form(o, &row_settings::form_csv, ",");
       o.tight_csv = !o.pair_datetime;
       return true;
     }},
    {"-csvgen", flag,
     [](cmd_params& o, text, list) {
       choose_form(o, &row_settings::form_csvgen, ",");
       return o.tight_csv = true;
     }},
    {"-csvl2t", flag,
     [](cmd_params& o, text, list) {
       choose_form(o, &row_settings::form_l2t, ",");
       return true;
     }},
    {"-bodyfile", flag,
     [](cmd_params& o, text, list) {
       choose_form(o, &row_settings::form_bodyfile, "|");
       return true;
     }},
    {"-xml", flag,
     [](cmd_params& o, text, list) {
       choose_form(o, &row_settings::form_xml, "");
       return true;
     }},
    {"-multiline", flag,
     [](cmd_params& o, text, list) {
       choose_form(o, &row_settings::form_multiline, "");
       return true;
     }},
    {"-alias", with_value,
     [](cmd_params& o, text v, list) { return add_file_aliases(o, expand_path_variables(v)); }},
    {"-aliaspath", with_value,
     [](cmd_params& o, text v, list) { return add_path_aliases(o, expand_path_variables(v)); }},
    {"-gzip", flag, accept},
    {"-zlib", flag, accept},
    {"-threads", with_value, accept},
    {"-zlibex", with_value, accept},
    {"-sqlite_log", with_value, refuse},
    {"-sqlite", with_value, refuse},
    {"-signal", with_value, [](cmd_params& o, text v, list) { return o.signal_name = v, true; }},
    {"-hostname", with_value, [](cmd_params& o, text v, list) { return o.host_name = v, true; }},
    {"-split_pathfile", flag, accept},
    {"-username", with_value, [](cmd_params& o, text v, list) { return o.user_name = v, true; }},
    {"-cpuinst", with_value, accept},
    {"-cpu", with_value, accept},
    {"-fragment_files", with_value, accept},
    {"-separate_files", flag, accept},
    {"-out", with_value, take_results_file},
    {"-outfile", with_value, take_results_file, results_file_open},
    {"-outdir", with_value, accept},
    {"-enumdir", with_value,
     [](cmd_params& o, text v, list) {
       o.enumdir_path = expand_path_variables(v);
       return o.enumdir_mode = true;
     }},
    {"-num_subdirs", with_value,
     [](cmd_params& o, text v, list) { return parse_u32(v, o.num_subdirs), true; }},
    {"-profile", flag, [](cmd_params& o, text, list) { return o.profile = true; }},
    {"-pipe", flag, [](cmd_params& o, text, list) { return o.pipe_mode = true; }},
    {"-filter_skip", repeated, skip_filter},
    {"-filter", repeated, take_filter},
    {"-filter_sig", repeated,
     [](cmd_params& o, text v, list) { return append_signature_filter(o.filters, v), true; }},
    {"-cmd_start_time", with_value,
     [](cmd_params& o, text v, list) { return take_start_time(o, v); }},
    {"-cmd_stop_time", with_value,
     [](cmd_params& o, text v, list) { return take_stop_time(o, v); }},
    {"-base10", flag, [](cmd_params& o, text, list) { return o.hex_numbers = false, true; }},
    {"-base16", flag, [](cmd_params& o, text, list) { return o.hex_numbers = true; }},
    {"-csv_separator", with_value,
     [](cmd_params& o, text v, list) { return set_csv_separator(o, v), true; }},
    {"-enable_quoted_csv_fields", flag, quote_fields},
    {"-no_whitespace", flag, drop_blanks},
    {"-dateformat", with_value, take_date_format},
    {"-timeformat", with_value, take_time_format},
    {"-verbose", flag, accept},
    {"-v", flag, accept},
    {"-quiet", flag, [](cmd_params& o, text, list) { return o.show_progress = false, true; }},
};

bool read_option(const common_option& option, cmd_params& options, argument_list& args) {
  if (option.is_read != nullptr && !option.is_read(options)) return true;
  std::string value;
  if (option.form == flag) {
    return !take_flag(option.name, args) || option.effect(options, value, args);
  }
  while (take_option(option.name, value, args)) {
    if (!option.effect(options, value, args)) return false;
    if (option.form != repeated) break;
  }
  return true;
}

}  // namespace

bool parse_common_options(cmd_params& options, argument_list& args) {
  if (args.empty()) return false;
  options.command_line = joined_arguments(args, '"');
  options.program_name = program_name_of(args.front());
  for (const common_option& option : common_options) {
    if (!read_option(option, options, args)) return false;
  }
  compile_date_time(options.time_format, options.date_format, options.time_format_text,
                    options.pair_datetime);
  return true;
}

}  // namespace ovrik
