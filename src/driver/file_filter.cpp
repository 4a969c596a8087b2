#include "driver/file_filter.h"

#include <charconv>

#include "base/number_text.h"
#include "base/text.h"

namespace ovrik {

namespace {

/// The elements of a list: what stands between its pipes and, if it has commas too, also what
/// stands between those.
std::vector<std::string> elements_of(std::string_view text) {
  std::vector<std::string> elements;
  for (const char separator : {'|', ','}) {
    if (text.find(separator) == std::string_view::npos) continue;
    const std::vector<std::string> pieces = split(text, separator);
    elements.insert(elements.end(), pieces.begin(), pieces.end());
  }
  if (elements.empty()) elements.emplace_back(text);
  return elements;
}

file_filter filter_of(const std::string& element) {
  file_filter filter;
  const size_t stream_at = element.find(':');
  filter.spec = element.substr(0, stream_at);
  filter.match_all = stream_at != std::string::npos && filter.spec == "*";
  if (filter.match_all) return filter;
  filter.star_left = filter.spec.starts_with('*');
  filter.star_right = filter.spec.ends_with('*');
  remove_all(filter.spec, '*');
  filter.path_spec = filter.spec.starts_with('\\');
  return filter;
}

}  // namespace

void parse_filter(std::vector<file_filter>& filters, std::string_view text) {
  filters.clear();
  for (const std::string& element : elements_of(lower_ascii(text))) {
    if (element == "*") {
      filters.assign(1, file_filter());
      filters.front().match_all = true;
      return;
    }
    filters.push_back(filter_of(element));
  }
}

void append_signature_filter(std::vector<file_filter>& filters, std::string_view text) {
  const std::vector<std::string> parts =
      split(text, text.find('|') != std::string_view::npos ? '|' : ',');
  file_filter filter;
  const std::string digits = trim(parts.front());
  for (size_t at = 0; at + 2 <= digits.size(); at += 2) {
    uint8_t byte = 0;
    const char* end = digits.data() + at + 2;
    if (std::from_chars(digits.data() + at, end, byte, 16).ptr != end) break;
    filter.signature.push_back(byte);
  }
  if (parts.size() > 1) parse_u64(parts[1], filter.signature_offset);
  if (!filter.signature.empty()) filters.push_back(filter);
}

}  // namespace ovrik
