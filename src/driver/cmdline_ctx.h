// The first object of a run and the last to go.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace ovrik {

/// Prepares the console for the run. At the end of the run, puts it back and does what is due then,
/// however the run ends.
class cmdline_ctx {
 public:
  cmdline_ctx();
  virtual ~cmdline_ctx();
  cmdline_ctx(const cmdline_ctx&) = delete;
  cmdline_ctx& operator=(const cmdline_ctx&) = delete;

  void start_timing() { m_start_time = std::chrono::steady_clock::now(); }

  bool clear_line_at_end = false;
  bool profile = false;     ///< print the elapsed time
  std::string diag_path;    ///< append the elapsed time to this file, unless empty
  std::string signal_name;  ///< raise this event last of all, unless empty

 private:
  std::optional<std::chrono::steady_clock::time_point> m_start_time;
};

}  // namespace ovrik
