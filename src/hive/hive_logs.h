// The transaction logs of a hive, put to use as Windows does it when it next loads the hive: what
// they hold is laid over the bytes that are read. Nothing is ever written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/byte_view.h"
#include "hive/hive_log_scan.h"
#include "hive/hive_patch.h"
#include "sources/host/fileio.h"

namespace ovrik {

/// How a log is read.
struct hive_log_source {
  uint64_t length = 0;  ///< in bytes

  /// Reads up to `size` bytes at `offset` into `buffer` and sets `size` to the count that came. 0:
  /// what stands there cannot be read.
  std::function<void(uint8_t* buffer, size_t& size, uint64_t offset)> read_at;
};

/// A log that is a file of the host, open as long as the source is in use.
hive_log_source log_source_of(const uni::fileio& file);

/// A log whose bytes are there already, as those of a file on a volume.
hive_log_source log_source_of(byte_view bytes);

/// Whether a log counts, and why not.
enum class log_standing {
  applied,     ///< at least one entry of it counts
  not_needed,  ///< the hive is clean: nothing in a log is newer
  empty,       ///< no byte, zeros, or a base block with nothing of a log behind it
  damaged,     ///< no sound base block, or no sound entry
  foreign,     ///< of another hive: name, resource manager or, in an old log, time differ
  stale,       ///< all in it went into the hive already
  behind_gap,  ///< entries between the last one that counts and its first are missing
  superseded,  ///< an old log beside entries, or beside another old one that counts
};

/// What became of one log. The numbers are 0 where there is nothing to tell.
struct log_report {
  log_kind kind = log_kind::none;
  log_standing standing = log_standing::not_needed;
  log_end end = log_end::nothing;
  size_t entries_applied = 0;
  size_t pages_applied = 0;
  size_t entries_stale = 0;     ///< in front of those that were applied
  uint32_t first_sequence = 0;  ///< of the sound entries
  uint32_t last_sequence = 0;
  uint64_t unreadable_bytes = 0;  ///< from the first byte on that could not be read
};

/// What the logs of a hive make of it. It owns the bytes that replace others.
class hive_replay {
 public:
  hive_replay() = default;
  hive_replay(hive_replay&&) = default;
  hive_replay& operator=(hive_replay&&) = default;

  bool base_sound = false;          ///< the hive's own base block is
  bool clean = false;               ///< sound, and the hive was written completely
  std::optional<size_t> base_from;  ///< the log whose copy stands in for the base block
  uint64_t size = 0;                ///< of the hive with its logs, in bytes; never less
  std::vector<log_report> logs;     ///< in the order given

  /// False: the hive reads as if there were no log.
  bool changes() const { return !m_patch.empty(); }

  /// Overwrites what the logs replace in the `count` bytes of `buffer`, read from the hive (or
  /// zeros, where it has none) at the file offset `offset`.
  void apply(uint64_t offset, uint8_t* buffer, size_t count) const {
    m_patch.apply(offset, buffer, count);
  }

  /// The replacements by their file offsets.
  const hive_patch& patch() const { return m_patch; }

 private:
  friend class log_chain;
  hive_patch m_patch;
  std::vector<std::vector<uint8_t>> m_bytes;
};

/// Reads the `logs` of a hive of `hive_size` bytes that begins with `start`, of which 0x1020 bytes
/// are looked at. Logs may come in any order. Memory and time go with what of the logs can be read,
/// up to 0x2FFFFFFF bytes of each; the hive gets longer by what they hold at most.
hive_replay replay_hive_logs(byte_view start, uint64_t hive_size,
                             const std::vector<hive_log_source>& logs);

}  // namespace ovrik
