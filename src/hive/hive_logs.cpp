#include "hive/hive_logs.h"

#include <algorithm>
#include <new>
#include <utility>

#include "base/text.h"

namespace ovrik {

namespace {

constexpr uint64_t largest_log_bytes = 0x2FFFFFFF;
constexpr size_t piece_bytes = 0x100000;  // of one read

// The header of the first bin, which has a second copy of the time stamp.
constexpr size_t first_bin_at = 0x1000;
constexpr size_t bin_time_stamp_at = 0x14;

/// Reads up to the first byte that cannot be read: nothing behind that can count, because an entry
/// counts whole or not at all. Memory grows with what comes, not with what a length claims.
std::vector<uint8_t> read_log(const hive_log_source& source) {
  std::vector<uint8_t> bytes;
  const uint64_t wanted = std::min(source.length, largest_log_bytes);
  try {
    while (bytes.size() < wanted) {
      const size_t at = bytes.size();
      const auto piece = static_cast<size_t>(std::min<uint64_t>(wanted - at, piece_bytes));
      bytes.resize(at + piece);
      size_t came = piece;
      source.read_at(bytes.data() + at, came, at);
      bytes.resize(at + std::min(came, piece));
      if (came == 0) break;
    }
  } catch (const std::bad_alloc&) {  // what came stays
  }
  return bytes;
}

/// True if `number` was given out before `than`; the numbers wrap at 32 bits.
bool is_older(uint32_t number, uint32_t than) { return static_cast<int32_t>(number - than) < 0; }

/// True if both are there and differ.
bool names_differ(const std::string& left, const std::string& right) {
  return !left.empty() && !right.empty() && !equal_ignoring_case(left, right);
}

bool is_zero(byte_view bytes) { return bytes.text() == std::string(bytes.size(), '\0'); }

bool ids_differ(byte_view left, byte_view right) {
  return !is_zero(left) && !is_zero(right) && left.text() != right.text();
}

}  // namespace

/// The logs of one hive on the way to being one chain.
class log_chain {
 public:
  log_chain(byte_view start, hive_replay& result)
      : m_start(start), m_base(read_base_block(start)), m_result(result) {
    m_result.base_sound = m_base.has_value();
    m_result.clean = m_base && m_base->sequence1 == m_base->sequence2;
  }

  void read(const hive_log_source& source);
  void apply();

 private:
  log_standing standing_by_itself(size_t index) const;
  bool is_foreign(const scanned_log& log) const;
  log_standing standing_in_time(size_t index);
  uint32_t start_of(size_t index) const;
  void chain_entries();
  void chain_newest_entries();
  void choose_dirty_pages();
  void choose_base_block();
  void put_pages(size_t index);

  scanned_log& log(size_t index) { return m_logs[index]; }
  log_report& report(size_t index) { return m_result.logs[index]; }
  /// The logs of this kind and standing, by their first numbers.
  std::vector<size_t> in_order(log_kind kind, log_standing standing) const;

  byte_view m_start;
  std::optional<base_block> m_base;
  hive_replay& m_result;
  std::vector<scanned_log> m_logs;
  std::vector<size_t> m_chain;  ///< the logs that count, in the order in which they do
};

void log_chain::read(const hive_log_source& source) {
  m_result.m_bytes.push_back(read_log(source));
  const byte_view bytes(m_result.m_bytes.back());
  m_logs.push_back(scan_hive_log(bytes));
  scanned_log& scanned = m_logs.back();
  log_report found{.kind = scanned.kind, .unreadable_bytes = source.length - bytes.size()};
  const bool ran_out = scanned.end == log_end::cut || scanned.end_at == bytes.size();
  if (ran_out && found.unreadable_bytes != 0) scanned.end = log_end::unreadable;
  found.end = scanned.end;
  if (!scanned.entries.empty()) {
    found.first_sequence = scanned.entries.front().sequence;
    found.last_sequence = scanned.entries.back().sequence;
  }
  m_result.logs.push_back(found);
}

/// `applied` stands for a log that can count, as far as the others let it.
log_standing log_chain::standing_by_itself(size_t index) const {
  const scanned_log& scanned = m_logs[index];
  const byte_view bytes(m_result.m_bytes[index]);
  if (!scanned.base) {
    const bool nothing =
        m_result.logs[index].unreadable_bytes == 0 && is_zero(bytes.clip(0, sealed_base_bytes));
    return nothing ? log_standing::empty : log_standing::damaged;
  }
  if (is_foreign(scanned)) return log_standing::foreign;
  if (scanned.kind == log_kind::none) {
    return scanned.end == log_end::unreadable ? log_standing::damaged : log_standing::empty;
  }
  return scanned.entries.empty() ? log_standing::damaged : log_standing::applied;
}

bool log_chain::is_foreign(const scanned_log& scanned) const {
  if (m_base && names_differ(m_base->name, scanned.base->name)) return true;
  if (scanned.kind == log_kind::entries) {
    return m_base && ids_differ(m_base->rm_id, scanned.base->rm_id);
  }
  if (scanned.kind != log_kind::dirty_pages) return false;
  if (m_base) return scanned.base->time_stamp != m_base->time_stamp;
  const byte_view bin = m_start.from(first_bin_at);
  return !bin.text_at(0, "hbin") || !bin.has(bin_time_stamp_at, 8) ||
         scanned.base->time_stamp != bin.u64_at(bin_time_stamp_at);
}

/// Counts what a log that could count holds of old entries, for a hive that tells its numbers.
log_standing log_chain::standing_in_time(size_t index) {
  for (const log_entry& entry : log(index).entries) {
    if (is_older(entry.sequence, m_base->sequence2)) ++report(index).entries_stale;
  }
  if (report(index).entries_stale == log(index).entries.size()) return log_standing::stale;
  const uint32_t number = start_of(index);
  const bool fits = log(index).kind == log_kind::entries || number == m_base->sequence1 ||
                    number == m_base->sequence2;
  return fits ? log_standing::applied : log_standing::behind_gap;
}

uint32_t log_chain::start_of(size_t index) const {
  const scanned_log& scanned = m_logs[index];
  return scanned.entries.empty() ? scanned.base->sequence1 : scanned.entries.front().sequence;
}

std::vector<size_t> log_chain::in_order(log_kind kind, log_standing standing) const {
  std::vector<size_t> found;
  for (size_t index = 0; index < m_logs.size(); ++index) {
    if (m_logs[index].kind == kind && m_result.logs[index].standing == standing) {
      found.push_back(index);
    }
  }
  // By insertion: the order of numbers that wrap is none that a sort may rely on.
  for (size_t i = 1; i < found.size(); ++i) {
    for (size_t j = i; j > 0 && is_older(start_of(found[j]), start_of(found[j - 1])); --j) {
      std::swap(found[j], found[j - 1]);
    }
  }
  return found;
}

/// The log that starts first counts, and each that goes on where the one before ended. Where the
/// first entry of a log is broken, what should have come behind it does not count.
void log_chain::chain_entries() {
  std::optional<uint32_t> next;
  std::vector<size_t> broken = in_order(log_kind::entries, log_standing::damaged);
  std::erase_if(broken,
                [this](size_t index) { return is_older(start_of(index), m_base->sequence2); });
  for (const size_t index : in_order(log_kind::entries, log_standing::applied)) {
    if (!next && !broken.empty() && is_older(start_of(broken.front()), start_of(index))) {
      next = start_of(broken.front());
    }
    if (next && start_of(index) != *next) {
      report(index).standing = log_standing::behind_gap;
      continue;
    }
    m_chain.push_back(index);
    next = log(index).entries.back().sequence + 1;
  }
}

/// For a hive that tells no numbers: the newest log counts, and each that ends in front of it. What
/// they hold may be in the hive already, but leads up to its last state.
void log_chain::chain_newest_entries() {
  std::vector<size_t> logs = in_order(log_kind::entries, log_standing::applied);
  for (; !logs.empty(); logs.pop_back()) {
    const size_t index = logs.back();
    if (!m_chain.empty() && log(index).entries.back().sequence + 1 != start_of(m_chain.front())) {
      report(index).standing = log_standing::stale;
      continue;
    }
    m_chain.insert(m_chain.begin(), index);
  }
}

/// Of old logs the newest one counts, where no entries do.
void log_chain::choose_dirty_pages() {
  std::vector<size_t> logs = in_order(log_kind::dirty_pages, log_standing::applied);
  if (m_chain.empty() && !logs.empty()) {
    m_chain.push_back(logs.back());
    logs.pop_back();
  }
  for (const size_t index : logs) report(index).standing = log_standing::superseded;
}

void log_chain::choose_base_block() {
  if (m_base) return;
  if (!m_chain.empty()) m_result.base_from = m_chain.back();
  for (size_t index = 0; m_chain.empty() && index < m_logs.size(); ++index) {
    if (!log(index).base || report(index).standing == log_standing::foreign) continue;
    const std::optional<size_t> best = m_result.base_from;
    if (!best || is_older(log(*best).base->sequence1, log(index).base->sequence1)) {
      m_result.base_from = index;
    }
  }
  if (!m_result.base_from) return;
  const byte_view bytes(m_result.m_bytes[*m_result.base_from]);
  m_result.m_patch.put(0, bytes.clip(0, sealed_base_bytes));
}

void log_chain::put_pages(size_t index) {
  const size_t stale = report(index).entries_stale;
  report(index).entries_applied = log(index).entries.size() - stale;
  for (size_t i = stale; i < log(index).entries.size(); ++i) {
    const log_entry& entry = log(index).entries[i];
    report(index).pages_applied += entry.page_count;
    for (size_t page = entry.first_page; page < entry.first_page + entry.page_count; ++page) {
      m_result.m_patch.put(log_bins_at + log(index).pages[page].bins_offset,
                           log(index).pages[page].bytes);
    }
  }
}

void log_chain::apply() {
  for (size_t index = 0; index < m_logs.size(); ++index) {
    report(index).standing = standing_by_itself(index);
    if (report(index).standing == log_standing::applied && m_base) {
      report(index).standing = standing_in_time(index);
    }
  }
  if (m_base) {
    chain_entries();
  } else {
    chain_newest_entries();
  }
  choose_dirty_pages();
  choose_base_block();
  for (const size_t index : m_chain) put_pages(index);
  m_result.size = m_result.m_patch.end_behind(m_result.size);
  for (size_t index = 0; index < m_logs.size(); ++index) {
    const bool counts = std::find(m_chain.begin(), m_chain.end(), index) != m_chain.end();
    if (!counts && m_result.base_from != index) m_result.m_bytes[index] = {};
  }
}

hive_log_source log_source_of(const uni::fileio& file) {
  return {file.length(), [&file](uint8_t* buffer, size_t& size, uint64_t offset) {
            file.read_at(buffer, size, offset);
          }};
}

hive_log_source log_source_of(byte_view bytes) {
  return {bytes.size(), [bytes](uint8_t* buffer, size_t& size, uint64_t offset) {
            const byte_view part = bytes.clip(offset, size);
            std::copy_n(part.data(), part.size(), buffer);
            size = part.size();
          }};
}

hive_replay replay_hive_logs(byte_view start, uint64_t hive_size,
                             const std::vector<hive_log_source>& logs) {
  hive_replay result;
  result.size = hive_size;
  log_chain chain(start, result);
  if (result.clean) {
    result.logs.resize(logs.size());
    return result;
  }
  for (const hive_log_source& source : logs) chain.read(source);
  chain.apply();
  return result;
}

}  // namespace ovrik
