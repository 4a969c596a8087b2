// The end of the run from outside, by a signal or with its console: what the streams hold goes out
// first, up to the last whole row.
#pragma once

namespace uni {

/// A stream that can write its whole rows out while the run is being ended.
class ending_stream {
 public:
  virtual ~ending_stream() = default;

  /// Writes the whole rows that are held. Called once, when nothing else will be written: from a
  /// signal handler or another thread, so that it takes no memory.
  virtual void write_last_rows() = 0;
};

/// Has the stream asked when the run is ended, or no longer. More streams than a run has at once
/// are not asked.
void watch_for_end(ending_stream* stream);
void forget_at_end(ending_stream* stream);

/// While one lives, what a stream holds is changing and the end waits. They are not nested.
class unbroken {
 public:
  unbroken();
  ~unbroken();
  unbroken(const unbroken&) = delete;
  unbroken& operator=(const unbroken&) = delete;
};

/// Makes the signals that end a run (on POSIX: interrupt, terminate, hang-up) do so with whole rows
/// written; the process then ends by the signal. A signal that the caller ignores stays ignored. On
/// Windows the console's handler calls `end_rows`.
void end_with_whole_rows();

/// Writes the whole rows of all streams; nothing is written from then on.
void end_rows();

}  // namespace uni
