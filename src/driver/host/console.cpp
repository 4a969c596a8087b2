#include "driver/host/console.h"

#include <algorithm>
#include <cstdarg>
#include <string>

#include "base/clean_text.h"
#include "base/format_text.h"
#include "base/text.h"
#include "sources/host/fileio.h"

namespace ovrik {

namespace {

constexpr const char* erase_line = "\x1b[2K";
constexpr size_t message_buffer = 4096;  // with the terminator

// Not through the library's stream, which may hand on a text byte by byte.
void print_error(const std::string& text) {
  uni::fileio error;
  error.attach_standard_error();
  error.append(text.data(), text.size());
}

}  // namespace

size_t show_progress(size_t max_width, std::string_view text) {
  if (text.empty()) return 0;
  const std::string_view shown = first_characters(text, max_width);
  std::string words(shown);
  remove_all(words, '\n');
  print_error(std::string(erase_line) + "\r    \r" + clean_text(words) + "\r");
  return shown.size();
}

void clear_progress() { print_error(std::string(erase_line) + '\r' + std::string(27, ' ') + '\r'); }

void print_message(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  print_error(clean_lines(format_text(format, arguments)));
  va_end(arguments);
}

void print_problem(const char* format, ...) {
  clear_progress();
  va_list arguments;
  va_start(arguments, format);
  std::string message = clean_lines(format_text(format, arguments));
  va_end(arguments);
  if (message.size() > message_buffer) return;
  if (message.size() == message_buffer) {
    constexpr std::string_view cut_mark = "...\n";
    message.replace(message_buffer - 1 - cut_mark.size(), std::string::npos, cut_mark);
  }
  print_error(message);
}

}  // namespace ovrik
