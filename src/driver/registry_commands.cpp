#include "driver/registry_commands.h"

#include "base/text.h"
#include "driver/host/console.h"
#include "hive/control_sets.h"
#include "hive/reg_query.h"
#include "shim/shim_parse.h"
#include "shim/shim_rows.h"
#include "sources/host/fileio.h"

namespace ovrik {

namespace {

constexpr const char* heading_rule =
    "----------------------------------------------------------------------------------------------"
    "----------- \n";
constexpr size_t progress_width = 50;

constexpr const char* key_prefix = "HKLM\\System\\";
constexpr const char* xp_key = "\\Control\\Session Manager\\AppCompatibility\\AppCompatCache";
constexpr const char* later_key = "\\Control\\Session Manager\\AppCompatCache\\AppCompatCache";

void append_registry_command(std::vector<registry_command>& commands,
                             const std::string& control_set, const char* key,
                             const std::string& hive_path, const std::string& title) {
  commands.push_back({key_prefix + control_set + key, hive_path, title});
}

/// The segments of a command's key, the hive's name first.
std::vector<std::string> key_segments(const registry_command& command) {
  std::vector<std::string> segments = split(command.key, '\\');
  segments.erase(segments.begin());  // HKLM
  return segments;
}

std::string heading_of(const registry_command& command, const registry_cmd_parameters& options) {
  std::string heading = heading_rule;
  heading += "Artifact: " + command.title + '\n';
  heading += "Registry key: " + command.key + " [enumvalues]\n";
  if (options.multi_source) heading += "Hive Location: " + aliased_hive_location(options) + '\n';
  return heading + heading_rule;
}

/// Writes a value's bytes to the results file in place of all that it holds. False: they did not
/// all go out; a file that does not open is passed over in silence.
bool extract_value(const std::string& path, const std::vector<uint8_t>& data) {
  uni::fileio file;
  if (!file.open_write(path)) return true;
  const bool written = file.append(data.data(), data.size());
  return file.close() && written;
}

/// Writes the rows of one value. False: there are none.
bool write_value(std::ostream& out, const reg_hit& hit, registry_cmd_parameters& options) {
  std::vector<uint8_t> joined;
  if (options.inc_slack && !hit.slack.empty()) {
    joined = hit.data;
    joined.insert(joined.end(), hit.slack.begin(), hit.slack.end());
  }
  const auto slack_length = static_cast<uint32_t>(joined.empty() ? 0 : hit.slack.size());
  const byte_view data(joined.empty() ? hit.data : joined);
  shim_cache_results results;
  if (!parse_shim_cache(results, data, slack_length, options.raw_mode)) return false;
  options.reg_update_time = hit.last_write_time;
  const bool written = output_shim_cache(out, results, options, data);
  options.reg_update_time = 0;
  return written;
}

/// Writes what a command's values hold to `out`, or with -extract to the results file. An empty
/// line ends the rows of a form with sections.
void handle_shim_cache(std::ostream& out, const std::vector<reg_hit>& hits,
                       registry_cmd_parameters& options) {
  bool any_rows = false;
  for (const reg_hit& hit : hits) {
    if (hit.data.empty()) continue;
    if (!options.raw_mode || options.out_path.empty()) {
      any_rows = write_value(out, hit, options) || any_rows;
    } else if (!extract_value(options.out_path, hit.data)) {
      out.setstate(std::ios::failbit);
    }
  }
  if (any_rows && !has_stream_header(options)) out << '\n';
}

}  // namespace

std::vector<registry_command> build_shim_commands_current(const std::string& hive_path) {
  std::vector<registry_command> commands;
  append_registry_command(commands, "CurrentControlSet", xp_key, hive_path, "WinXP Shim Cache");
  append_registry_command(commands, "CurrentControlSet", later_key, hive_path, "Shim Cache");
  return commands;
}

bool build_shim_commands_all(std::vector<registry_command>& commands, const reg_hive& hive,
                             const std::string& hive_path) {
  commands.clear();
  std::vector<std::string> names;
  if (!list_control_sets(hive, names)) return false;
  for (const std::string& name : names) {
    const bool first = &name == &names.front();
    const std::string title = "Shim Cache [" + name + (first ? " - CurrentControlSet]" : "]");
    append_registry_command(commands, name, xp_key, hive_path, title);
    append_registry_command(commands, name, later_key, hive_path, title);
  }
  return true;
}

size_t run_registry_commands(const std::vector<registry_command>& commands, std::ostream& out,
                             const reg_hive& hive, registry_cmd_parameters& options) {
  if (commands.empty()) return 0;
  const bool header_per_section = !has_stream_header(options);
  if (header_per_section) options.emit_row_header = true;
  size_t found = 0;
  for (const registry_command& command : commands) {
    if (options.show_progress) {
      diag_printf(options, "analyzing: %s", command.title.c_str());
      show_progress(progress_width, "analyzing: " + command.title);
    }
    std::vector<reg_hit> hits;
    if (!query_values(hive, key_segments(command), hits)) continue;
    options.hive_location = command.hive_path;
    options.artifact_title = command.title;
    if (options.section_headers) {
      if (header_per_section) options.emit_row_header = true;
      const bool first = &command == &commands.front();
      options.section_text = (first ? "" : "\n") + heading_of(command, options);
    }
    handle_shim_cache(out, hits, options);
    ++found;
  }
  if (options.show_progress) show_progress(progress_width, "\n");
  return found;
}

}  // namespace ovrik
