// Any text as a command line, one argument a line: what the options, their dates, filters, aliases
// and variables make of it. What was read must then be usable.

#include <cstdlib>

#include "base/byte_view.h"
#include "base/text.h"
#include "driver/options/parse_options.h"
#include "driver/options/path_variables.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace ovrik;
  const std::string text = byte_view(data, size).text();
  const argument_list arguments = split(text, '\n');
  const parsed_options parsed = parse_options(arguments);
  const run_options& options = parsed.options;
  if (parsed.valid == (options.command_line.empty() && !text.empty())) std::abort();
  if (!parsed.valid && options.road != run_road::none) std::abort();
  const date_window& window = options.list.window;
  if (window.start && window.stop && *window.stop < *window.start) std::abort();
  for (const std::string& argument : arguments) {
    bool unreadable = false;
    filter_accepts_path(argument, options.list.filters, unreadable);
    options.aliases.shown(argument);
    expand_path_variables(argument);
  }
  return 0;
}
