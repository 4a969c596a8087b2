#include "driver/options/file_filter.h"

#include <charconv>

#include "base/number_text.h"
#include "base/text.h"
#include "sources/host/fileio.h"
#include "sources/host/host_path.h"

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
  filter.path_spec = filter.spec.starts_with('\\') || filter.spec.starts_with(host_separator());
  return filter;
}

bool is_separator(char c) { return c == '\\' || c == '/'; }

/// True if `spec` stands in the folder's path and ends with the name of a folder. Either separator
/// of the folder does for the one that `spec` begins with.
bool hits_folder(std::string folder, const std::string& spec) {
  for (char& c : folder) {
    if (is_separator(c)) c = spec.front();
  }
  for (size_t at = folder.find(spec); at != std::string::npos; at = folder.find(spec, at + 1)) {
    const size_t end = at + spec.size();
    if (end == folder.size() || is_separator(folder[end])) return true;
  }
  return false;
}

bool hits_name(const std::string& name, const file_filter& filter) {
  if (filter.star_left && filter.star_right) return name.find(filter.spec) != std::string::npos;
  if (filter.star_left) {
    // Only the first occurrence counts: "a.exe.exe" does not pass "*.exe".
    const size_t at = name.find(filter.spec);
    return at != std::string::npos && at + filter.spec.size() == name.size();
  }
  if (filter.star_right) return name.starts_with(filter.spec);
  return !filter.spec.empty() && name == filter.spec;
}

bool hits_signature(const std::string& path, const file_filter& filter, bool& unreadable) {
  uni::fileio file;
  if (!file.open_read(path)) {
    unreadable = true;
    return false;
  }
  std::vector<uint8_t> bytes(filter.signature.size());
  size_t read = bytes.size();
  return file.read_at(bytes.data(), read, filter.signature_offset) && read == bytes.size() &&
         bytes == filter.signature;
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

bool filter_accepts_path(const std::string& path, const std::vector<file_filter>& filters,
                         bool& unreadable) {
  unreadable = false;
  if (path.empty()) return false;
  if (filters.empty()) return true;
  const std::string name = lower_ascii(last_component(path));
  const std::string folder = lower_ascii(path.substr(0, path.size() - name.size()));
  for (const file_filter& filter : filters) {
    if (filter.path_spec && hits_folder(folder, filter.spec)) return true;
    if (filter.match_all || hits_name(name, filter)) return true;
    if (!filter.signature.empty() && hits_signature(path, filter, unreadable)) return true;
  }
  return false;
}

}  // namespace ovrik
