#include "driver/registry_commands.h"

#include <optional>
#include <string_view>
#include <vector>

#include "base/clean_text.h"
#include "base/text.h"
#include "driver/cache_places.h"
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

constexpr size_t longest_name = 255;  // of a key in its usual encoding, in bytes

/// One question to a hive: the cache of one control set, under its key of XP or of later systems.
struct registry_command {
  std::string key;  ///< "HKLM\\System\\...", its last part the value's name
  std::string title;
};

/// The command for a place below a control set. Without a `label` the title is that of the place.
registry_command command_for(const cache_place& place, const std::string& control_set,
                             const std::string& label) {
  registry_command command = {.key = "HKLM\\System\\" + control_set,
                              .title = label.empty() ? place.title : label};
  for (const std::string_view segment : place.path) (command.key += '\\') += segment;
  return command;
}

std::string heading_of(const registry_command& command, const std::string& shown_location,
                       bool names_hive) {
  std::string heading = heading_rule;
  heading += "Artifact: " + clean_text(command.title) + '\n';
  heading += "Registry key: " + clean_text(command.key) + " [enumvalues]\n";
  if (names_hive) heading += "Hive Location: " + clean_text(shown_location) + '\n';
  return heading + heading_rule;
}

/// Writes a value's bytes to the results file in place of all that it holds. False: they did not
/// all go out; a file that does not open is passed over in silence.
bool extract_value(const std::string& path, byte_view data) {
  uni::fileio file;
  if (!file.open_write(path)) return true;
  const bool written = file.append(data.data(), data.size());
  return file.close() && written;
}

/// Writes the rows of one value. False: there are none.
bool write_value(row_writer& writer, const cache_section& section, const reg_hit& hit,
                 const shim_settings& settings) {
  const byte_view data = settings.inc_slack ? hit.data_and_slack : hit.data;
  const auto slack_length = static_cast<uint32_t>(data.size() - hit.data.size());
  shim_cache_results results;
  return parse_shim_cache(results, data, slack_length, settings.raw_mode) &&
         output_shim_cache(writer, section, results, settings, data);
}

void show_analyzing(const hive_output& output, const std::string& title) {
  if (!output.show_progress) return;
  diag_printf(output.opening.log, "analyzing: %s", title.c_str());
  show_progress(progress_width, "analyzing: " + title);
}

/// One run over a hive.
class hive_printing {
 public:
  hive_printing(const hive_output& output, const reg_hive& hive, const std::string& location)
      : m_output(output),
        m_hive(hive),
        m_shown_location(output.aliases.shown(location)),
        m_allowance(hive.size()) {}

  void print_current() {
    const std::string name = "CurrentControlSet";
    std::optional<reg_key> control_set;
    for (const cache_place& place : cache_places) {
      const registry_command command = command_for(place, name, {});
      show_analyzing(m_output, command.title);
      if (!control_set) {
        control_set.emplace();
        resolve_current_control_set(m_hive, m_allowance, *control_set);
      }
      if (control_set->nk_offset != 0) run(place, command, control_set->nk_offset);
    }
  }

  /// False: the hive has no control sets, or nothing that tells which is current.
  bool print_all() {
    std::vector<reg_key> control_sets;
    if (!list_control_sets(m_hive, m_allowance, control_sets)) return false;
    for (const reg_key& control_set : control_sets) {
      const std::string name = control_set.name.clip(0, longest_name).text();
      const bool first = &control_set == &control_sets.front();
      const std::string label = "Shim Cache [" + name + (first ? " - CurrentControlSet]" : "]");
      for (const cache_place& place : cache_places) {
        const registry_command command = command_for(place, name, label);
        show_analyzing(m_output, command.title);
        run(place, command, control_set.nk_offset);
      }
    }
    return true;
  }

  /// What came of it; the hive was looked at.
  hive_outcome outcome() const {
    if (m_allowance.exceeded()) return hive_outcome::cut_short;
    return m_any_found ? hive_outcome::found : hive_outcome::nothing_found;
  }

 private:
  /// Writes what the values of a command hold, below its heading. An empty line ends the rows of a
  /// form with sections.
  void run(const cache_place& place, const registry_command& command, uint32_t control_set) {
    row_writer& writer = m_output.writer;
    const bool first = !m_any_run;
    m_any_run = true;
    bool any_hit = false;
    bool any_rows = false;
    cache_section section{.title = command.title, .hive_location = m_shown_location};
    query_values(m_hive, control_set, place.path, m_allowance, [&](const reg_hit& hit) {
      if (!any_hit) {
        writer.begin_section((first ? "" : "\n") +
                             heading_of(command, m_shown_location, m_output.names_hives));
      }
      any_hit = true;
      section.key_time = hit.last_write_time;
      any_rows = write_hit(section, hit) || any_rows;
    });
    if (any_rows && !facts_of(writer.settings().form).header_once) writer.out() << '\n';
    // A live check of the next command ends the run, and costs nothing of this one.
    if (any_hit) writer.out().flush();
    if (any_hit) m_any_found = true;
  }

  /// Writes what a value holds: its rows, or with -extract its bytes to its file. False: no rows.
  bool write_hit(const cache_section& section, const reg_hit& hit) {
    if (hit.data.empty()) return false;
    if (m_output.extract_path.empty()) {
      return write_value(m_output.writer, section, hit, m_output.shim);
    }
    if (!extract_value(m_output.extract_path, hit.data)) {
      m_output.writer.out().setstate(std::ios::failbit);
    }
    return false;
  }

  const hive_output& m_output;
  const reg_hive& m_hive;
  const std::string m_shown_location;
  read_allowance m_allowance;
  bool m_any_run = false;
  bool m_any_found = false;
};

}  // namespace

hive_outcome print_hive(const hive_output& output, const reg_hive& hive,
                        const std::string& location) {
  hive_printing printing(output, hive, location);
  if (!output.all_controlsets) {
    printing.print_current();
  } else if (!printing.print_all()) {
    return hive_outcome::no_control_sets;
  }
  if (output.show_progress) show_progress(progress_width, "\n");
  if (printing.outcome() == hive_outcome::cut_short) {
    print_problem("prob reading %s: its lists name more than it can hold\n", location.c_str());
  }
  return printing.outcome();
}

}  // namespace ovrik
