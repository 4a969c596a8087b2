#include "shim/shim_columns.h"

#include <algorithm>

namespace ovrik {

namespace {

constexpr size_t date_width = 10;
constexpr size_t time_width = 12;
constexpr size_t joined_width = 23;
constexpr size_t number_width = 10;
constexpr size_t short_width = 5;
constexpr size_t meaning_width = 25;
constexpr size_t least_host_width = 8;
constexpr size_t path_width = 20;

/// Gathers the columns of a section.
class column_list {
 public:
  explicit column_list(const row_settings& settings) : m_settings(settings) {}

  void add(const char* name, size_t width, cell_kind kind = cell_kind::text) {
    field_cell column;
    column.kind = kind;
    column.text = name;
    column.width = m_settings.tight_csv ? 0 : width;
    columns.push_back(column);
  }

  /// The one or two columns of a time. In the joined form only `joined_kind` decides about the
  /// blank in front of the name.
  void add_time(const char* joined_name, cell_kind joined_kind, const char* date_name,
                const char* time_name) {
    if (m_settings.pair_datetime) {
      add(joined_name, joined_width, joined_kind);
    } else {
      add(date_name, date_width);
      add(time_name, time_width, cell_kind::time_header);
    }
  }

  std::vector<field_cell> columns;

 private:
  const row_settings& m_settings;
};

/// Fills the cells of a row from left to right.
class cell_list {
 public:
  explicit cell_list(const row_writer& writer)
      : row(writer),
        m_time_kind(writer.settings().pair_datetime ? cell_kind::time_joined
                                                    : cell_kind::time_pair) {}

  void add_time(uint64_t filetime) { add_number(filetime, m_time_kind); }

  void add_number(uint64_t value, cell_kind kind, uint32_t style = 0) {
    m_column += row_set_number(row, m_column, value, kind, style);
  }

  void add_text(const std::string& text) { row_set_text(row, m_column++, text); }

  field_row row;

 private:
  cell_kind m_time_kind;
  size_t m_column = 0;
};

}  // namespace

std::string shim_flags_meaning(uint32_t flags1) {
  struct flag_word {
    uint32_t bit;
    uint32_t shown_when;  // the first test is inverted against the others
    const char* word;
  };
  constexpr flag_word words[] = {{0x1, 0, "legacy-gui"}, {0x2, 0x2, "exec"}, {0x8, 0x8, "admin"}};
  std::string meaning;
  for (const flag_word& flag : words) {
    if ((flags1 & flag.bit) != flag.shown_when) continue;
    if (!meaning.empty()) meaning += "; ";
    meaning += flag.word;
  }
  return meaning;
}

std::vector<field_cell> shim_columns(const shim_layout_row& layout, const cache_section& section,
                                     const shim_settings& settings, const row_settings& rows) {
  column_list list(rows);
  if (section.key_time != 0) {
    list.add_time("reg date [UTC]", cell_kind::time_header, "reg date", "reg-UTC");
  }
  list.add_time("file modify [UTC]", cell_kind::text, "file mod", "time-UTC");
  if (layout.has_update_time()) {
    list.add_time("xpupdate [UTC]", cell_kind::time_header, "xpupdate", "time-UTC");
  }
  list.add("entry", short_width);
  if (layout.has_use_order()) list.add("order", short_width);
  if (layout.has_file_size) list.add("file sz", number_width);
  if (layout.has_flags) {
    list.add("flags1", number_width);
    list.add("flags2", number_width);
    list.add("meaning (experimental)", meaning_width);
  }
  if (settings.inc_slack) list.add("slack", short_width);
  if (!rows.host_name.empty()) {
    list.add("hostname", std::max(rows.host_name.size(), least_host_width));
  }
  list.add("Path/file", path_width);
  return std::move(list.columns);
}

field_row shim_row(const shim_cache_entry& entry, const shim_layout_row& layout,
                   const cache_section& section, const shim_settings& settings,
                   const row_writer& writer) {
  cell_list cells(writer);
  if (section.key_time != 0) cells.add_time(section.key_time);
  cells.add_time(entry.modified_time);
  if (layout.has_update_time()) cells.add_time(entry.update_time);
  cells.add_number(entry.entry_number, cell_kind::number32, field_cell::always_decimal);
  if (layout.has_use_order()) {
    // Sign-extended and shown unsigned: an entry that the list lacks shows the largest number.
    cells.add_number(static_cast<uint64_t>(int64_t{entry.order}), cell_kind::number32,
                     field_cell::always_decimal);
  }
  if (layout.has_file_size) {
    cells.add_number(entry.file_size, cell_kind::number64, field_cell::blank_zero);
  }
  if (layout.has_flags) {
    cells.add_number(entry.flags1, cell_kind::number32);
    cells.add_number(entry.flags2, cell_kind::number32);
    cells.add_text(shim_flags_meaning(entry.flags1));
  }
  if (settings.inc_slack) cells.add_text(entry.in_slack ? "*" : "");
  const std::string& host = writer.settings().host_name;
  if (!host.empty()) cells.add_text(host);
  cells.add_text(path_raw(entry));
  return std::move(cells.row);
}

}  // namespace ovrik
