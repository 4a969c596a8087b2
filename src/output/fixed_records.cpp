#include "output/fixed_records.h"

#include <map>

#include "base/number_text.h"
#include "base/text.h"
#include "output/field_text.h"

namespace ovrik {

namespace {

constexpr char slot_letters[] = {'M', 'A', 'C', 'B'};
constexpr std::string_view timezone = "UTC";

constexpr uint64_t source_inode = 0;  // no source of rows knows the inode of a cached file

/// What the slots of equal times share in their row.
struct timeline_row {
  std::string macb = "....";
  std::string type;
};

using timeline_rows = std::multimap<uint64_t, timeline_row>;

/// One row per different time, by time; slots of one time share a row.
timeline_rows rows_of(const timeline_record& record) {
  timeline_rows rows;
  for (size_t slot = 0; slot < time_slots; ++slot) {
    time_value time;
    if (!decode_time(time, record.seconds[slot], time_encoding::unix_seconds)) continue;
    auto row = rows.find(record.seconds[slot]);
    if (row == rows.end()) row = rows.emplace(record.seconds[slot], timeline_row());
    if (!row->second.type.empty()) row->second.type += "; ";
    row->second.type += record.labels[slot];
    row->second.macb[slot] = slot_letters[slot];
  }
  return rows;
}

/// The line of one record or header: fields with the separator between them.
class separated_line {
 public:
  separated_line(const field_text& texts, std::string_view separator)
      : m_texts(texts), m_separator(separator) {}

  /// Adds a field that is the program's own.
  separated_line& add(std::string_view field) {
    separate();
    m_line += field;
    return *this;
  }

  /// Adds a text that may come from evidence.
  separated_line& add_text(std::string_view text, line_ends_as ends = line_ends_as::pictures) {
    separate();
    m_texts.append(m_line, text, ends);
    return *this;
  }

  std::string text() const { return m_line + '\n'; }

 private:
  void separate() {
    if (!m_first) m_line += m_separator;
    m_first = false;
  }

  const field_text& m_texts;
  std::string_view m_separator;
  std::string m_line;
  bool m_first = true;
};

std::string timeline_header(const row_writer& writer) {
  const row_settings& settings = writer.settings();
  separated_line line(writer.texts(), settings.csv_separator);
  if (settings.pair_datetime) {
    line.add("date/time");
  } else {
    line.add("date").add("time");
  }
  for (const char* name :
       {"timezone", "MACB", "source", "sourcetype", "type", "user", "host", "short", "desc",
        "version", "filename", "inode", "notes", "format", "extra"}) {
    line.add(name);
  }
  return line.text();
}

constexpr const char* body_header =
    "md5|name|inode|mode as string|uid|gid|size|access time|modify time|mft time|create time\n";

std::string inode_text(const row_settings& settings) {
  return settings.hex_numbers ? "0x" + hex_text(source_inode, 8) : decimal_text(source_inode);
}

}  // namespace

uint64_t slot_seconds(uint64_t filetime) {
  uint64_t seconds = 0;
  return filetime != 0 && filetime_to_unix(filetime, seconds) ? seconds : 0;
}

timeline_record::timeline_record(const row_settings& settings)
    : user(settings.user_name),
      host(settings.host_name),
      inode(inode_text(settings)),
      format(settings.program_name + " (lorvane)") {}

void write_timeline_row(row_writer& writer, const timeline_record& record) {
  const row_settings& settings = writer.settings();
  if (writer.take_due_header()) writer.out() << timeline_header(writer);
  const std::string lead = settings.tight_csv ? "" : " ";
  for (const auto& [seconds, row] : rows_of(record)) {
    time_value time;
    decode_time(time, seconds, time_encoding::unix_seconds);
    std::string date_text;
    std::string time_text;
    format_date_time(date_text, time_text, time, settings.time_format);
    separated_line line(writer.texts(), settings.csv_separator);
    if (settings.pair_datetime) {
      date_text.insert(0, lead).append(1, ' ').append(time_text);
      line.add(date_text);
    } else {
      line.add(date_text).add(lead + time_text);
    }
    constexpr line_ends_as names = line_ends_as::names;
    line.add(timezone).add(row.macb).add_text(record.source).add_text(record.sourcetype);
    line.add_text(row.type).add_text(record.user).add_text(record.host);
    line.add_text(record.short_text).add_text(record.desc, names);
    line.add(decimal_text(record.version)).add_text(record.filename).add(record.inode);
    line.add_text(record.notes, names).add_text(record.format).add_text(record.extra, names);
    writer.out() << line.text();
  }
}

void write_body_row(row_writer& writer, const body_record& record) {
  if (writer.take_due_header()) writer.out() << body_header;
  constexpr const char* separator = "|";
  static const field_text texts(separator);
  separated_line line(texts, separator);
  line.add("0").add_text(record.name);           // no MD5 is known
  line.add(decimal_text(source_inode)).add("");  // nor a mode
  line.add("0").add("0").add(decimal_text(record.size));
  for (const time_slot slot : {accessed_slot, modified_slot, changed_slot, born_slot}) {
    line.add(decimal_text(record.seconds[slot]));
  }
  writer.out() << line.text();
}

}  // namespace ovrik
