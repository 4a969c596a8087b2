#include "base/diagnostics_log.h"

#include <cstdarg>

#include "base/clean_text.h"
#include "base/format_text.h"

namespace ovrik {

void diag_printf(diagnostics_log& log, const char* format, ...) {
  if (!log.diag_on) return;
  va_list arguments;
  va_start(arguments, format);
  *log.diag_stream << clean_text(format_text(format, arguments)) << '\n';
  va_end(arguments);
}

}  // namespace ovrik
