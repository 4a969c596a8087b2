// The live checks of the hive reader.
#pragma once

namespace ovrik {

/// Prints the expression, the source module and the line of a failed check to standard error and
/// ends the program abnormally. The numbers name the checks in reports; they are not those of the
/// present source text.
[[noreturn]] void reg_assert_failed(const char* expression, unsigned line);

/// Stays in shipped programs: a hive that fails such a check must not go unnoticed.
inline void reg_assert(bool holds, const char* expression, unsigned line) {
  if (!holds) reg_assert_failed(expression, line);
}

}  // namespace ovrik
