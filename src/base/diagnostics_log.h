// The diagnostics text file of a run.
#pragma once

#include <memory>
#include <ostream>
#include <string>

namespace ovrik {

/// Off until a file was opened for it. Text that does not reach the file is lost without a word:
/// diagnostics are no results.
struct diagnostics_log {
  bool diag_on = false;
  std::unique_ptr<std::ostream> diag_stream;  ///< there while `diag_on`
  std::string diag_path;
};

/// Writes the formatted text, as `clean_text` makes it, and a line end to the diagnostics file, if
/// there is one.
void diag_printf(diagnostics_log& log, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

}  // namespace ovrik
