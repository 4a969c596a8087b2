#include "driver/cmdline_ctx.h"

#include <sstream>

#include "driver/host/console.h"
#include "driver/host/host_console.h"
#include "sources/host/fileio.h"

namespace ovrik {

namespace {

std::string elapsed_text(std::chrono::steady_clock::time_point start) {
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  std::ostringstream text;
  text << "->" << elapsed.count() << " secs";
  return text.str();
}

}  // namespace

cmdline_ctx::cmdline_ctx() { enable_escape_sequences(); }

cmdline_ctx::~cmdline_ctx() {
  restore_console_mode();
  if (clear_line_at_end) clear_progress();
  if (m_start_time) {
    const std::string elapsed = elapsed_text(*m_start_time);
    if (profile) print_message("%s\n", elapsed.c_str());
    uni::fileio diagnostics;
    if (!diag_path.empty() && diagnostics.open_append(diag_path)) {
      diagnostics.append(elapsed.data(), elapsed.size());
    }
  }
  if (!signal_name.empty()) signal_event(signal_name);
}

}  // namespace ovrik
