#include "driver/options/option_scan.h"

#include <algorithm>

#include "base/text.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

/// The place of the first entry from `first` on that equals `name`; the list's size if none does.
size_t find_name(const char* name, const argument_list& args, size_t first) {
  size_t place = first;
  while (place < args.size() && !equal_ignoring_case(args[place], name)) ++place;
  return std::min(place, args.size());
}

}  // namespace

bool take_flag(const char* name, argument_list& args) {
  const size_t place = find_name(name, args, 0);
  if (place == args.size()) return false;
  args.erase(args.begin() + static_cast<std::ptrdiff_t>(place));
  return true;
}

bool take_option(const char* name, std::string& value, argument_list& args) {
  const size_t place = find_name(name, args, 0);
  if (place + 1 >= args.size()) return false;
  const auto at = args.begin() + static_cast<std::ptrdiff_t>(place);
  value = *(at + 1);
  args.erase(at, at + 2);
  return true;
}

bool peek_flag(const char* name, const argument_list& args) {
  return find_name(name, args, 1) < args.size();
}

bool peek_option(const char* name, std::string& value, const argument_list& args) {
  const size_t place = find_name(name, args, 1);
  if (place + 1 >= args.size()) return false;
  value = args[place + 1];
  return true;
}

std::string joined_arguments(const argument_list& args, char quote) {
  std::string line;
  for (const std::string& argument : args) {
    if (!line.empty()) line += ' ';
    const bool quoted = argument.find(' ') != std::string::npos;
    if (quoted) line += quote;
    line += argument;
    if (quoted) line += quote;
  }
  return line;
}

std::string program_name_of(const std::string& program_path) {
  const std::string name = last_component(program_path);
  return name.substr(0, name.rfind('.'));
}

}  // namespace ovrik
