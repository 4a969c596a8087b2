#include "base/text.h"

#include <algorithm>
#include <utility>

namespace ovrik {

namespace {

constexpr std::string_view white_space = " \t\r\n\v\f";

char lower_char(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::string lower_ascii(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), lower_char);
  return lower;
}

bool equal_ignoring_case(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lower_char(a) == lower_char(b); });
}

std::string trim(std::string_view text) {
  const size_t first = text.find_first_not_of(white_space);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(white_space) - first + 1));
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  while (true) {
    const size_t end = text.find(separator);
    pieces.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return pieces;
    text.remove_prefix(end + 1);
  }
}

std::vector<std::string> list_parts(std::string list) {
  remove_all(list, '"');
  for (const char separator : {',', ';'}) replace_all(list, separator, '|');
  std::vector<std::string> parts;
  for (const std::string& piece : split(list, '|')) {
    if (std::string part = trim(piece); !part.empty()) parts.push_back(std::move(part));
  }
  return parts;
}

void replace_all(std::string& text, char from, char to) {
  std::replace(text.begin(), text.end(), from, to);
}

void remove_all(std::string& text, char unwanted) { std::erase(text, unwanted); }

void append_padded_right(std::string& line, std::string_view text, size_t width) {
  line += text;
  if (text.size() < width) line.append(width - text.size(), ' ');
}

void append_padded_left(std::string& line, std::string_view text, size_t width, char fill) {
  if (text.size() < width) line.append(width - text.size(), fill);
  line += text;
}

}  // namespace ovrik
