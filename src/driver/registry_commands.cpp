#include "driver/registry_commands.h"

#include <vector>

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

/// One question to a hive: the cache of one control set, under its key of XP or of later systems.
struct registry_command {
  std::string key;  ///< "HKLM\\System\\...", its last part the value's name
  std::string title;
};

using command_list = std::vector<registry_command>;

void append_commands(command_list& commands, const std::string& control_set,
                     const std::string& xp_title, const std::string& title) {
  commands.push_back({key_prefix + control_set + xp_key, xp_title});
  commands.push_back({key_prefix + control_set + later_key, title});
}

/// The two commands for the current control set, the XP key first.
command_list current_commands() {
  command_list commands;
  append_commands(commands, "CurrentControlSet", "WinXP Shim Cache", "Shim Cache");
  return commands;
}

/// Fills `commands` with the two for each control set, the current one first. False: the hive has
/// no control sets, or nothing that tells which is current.
bool all_commands(command_list& commands, const reg_hive& hive) {
  commands.clear();
  std::vector<std::string> names;
  if (!list_control_sets(hive, names)) return false;
  for (const std::string& name : names) {
    const bool first = &name == &names.front();
    const std::string title = "Shim Cache [" + name + (first ? " - CurrentControlSet]" : "]");
    append_commands(commands, name, title, title);
  }
  return true;
}

/// The segments of a command's key, the hive's name first.
std::vector<std::string> key_segments(const registry_command& command) {
  std::vector<std::string> segments = split(command.key, '\\');
  segments.erase(segments.begin());  // HKLM
  return segments;
}

std::string heading_of(const registry_command& command, const std::string& shown_location,
                       bool names_hive) {
  std::string heading = heading_rule;
  heading += "Artifact: " + command.title + '\n';
  heading += "Registry key: " + command.key + " [enumvalues]\n";
  if (names_hive) heading += "Hive Location: " + shown_location + '\n';
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
bool write_value(row_writer& writer, const cache_section& section, const reg_hit& hit,
                 const shim_settings& settings) {
  std::vector<uint8_t> joined;
  if (settings.inc_slack && !hit.slack.empty()) {
    joined = hit.data;
    joined.insert(joined.end(), hit.slack.begin(), hit.slack.end());
  }
  const auto slack_length = static_cast<uint32_t>(joined.empty() ? 0 : hit.slack.size());
  const byte_view data(joined.empty() ? hit.data : joined);
  shim_cache_results results;
  return parse_shim_cache(results, data, slack_length, settings.raw_mode) &&
         output_shim_cache(writer, section, results, settings, data);
}

/// Writes what a command's values hold: their rows, or with -extract their bytes to its file. An
/// empty line ends the rows of a form with sections.
void write_values(const hive_output& output, cache_section section,
                  const std::vector<reg_hit>& hits) {
  row_writer& writer = output.writer;
  bool any_rows = false;
  for (const reg_hit& hit : hits) {
    if (hit.data.empty()) continue;
    section.key_time = hit.last_write_time;
    if (output.extract_path.empty()) {
      any_rows = write_value(writer, section, hit, output.shim) || any_rows;
    } else if (!extract_value(output.extract_path, hit.data)) {
      writer.out().setstate(std::ios::failbit);
    }
  }
  if (any_rows && !facts_of(writer.settings().form).header_once) writer.out() << '\n';
}

void show_analyzing(const hive_output& output, const std::string& title) {
  if (!output.show_progress) return;
  diag_printf(output.opening.log, "analyzing: %s", title.c_str());
  show_progress(progress_width, "analyzing: " + title);
}

}  // namespace

hive_outcome print_hive(const hive_output& output, const reg_hive& hive,
                        const std::string& location) {
  command_list commands = current_commands();
  if (output.all_controlsets && !all_commands(commands, hive)) return hive_outcome::no_control_sets;
  const std::string shown_location = output.aliases.shown(location);
  hive_outcome outcome = hive_outcome::nothing_found;
  for (const registry_command& command : commands) {
    show_analyzing(output, command.title);
    std::vector<reg_hit> hits;
    if (!query_values(hive, key_segments(command), hits)) continue;
    const bool first = &command == &commands.front();
    output.writer.begin_section((first ? "" : "\n") +
                                heading_of(command, shown_location, output.names_hives));
    write_values(output, {.title = command.title, .hive_location = shown_location}, hits);
    outcome = hive_outcome::found;
  }
  if (output.show_progress) show_progress(progress_width, "\n");
  return outcome;
}

}  // namespace ovrik
