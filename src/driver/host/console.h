// What goes to standard error: progress in place and messages. Only `clean_lines` of a text gets
// there; a name from evidence that may hold a line feed goes through `clean_text` before.
#pragma once

#include <cstddef>
#include <string_view>

namespace ovrik {

/// Shows the characters of `text` that fit into `max_width` bytes, without line feeds, in place of
/// the line that the cursor is in, and returns the count of their bytes. A lone line feed clears
/// the line; an empty text does nothing.
size_t show_progress(size_t max_width, std::string_view text);

/// Wipes the progress line.
void clear_progress();

/// Prints the formatted message with one write: a console shows a character whose bytes come one by
/// one as several characters.
void print_message(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Wipes the progress line and prints the formatted message. One that is just too long for 4096
/// bytes ends in "...", a longer one is not printed.
void print_problem(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace ovrik
