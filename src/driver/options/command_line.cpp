#include "driver/options/command_line.h"

#include <chrono>
#include <ratio>

#include "base/clean_text.h"
#include "base/filetime.h"
#include "driver/host/collect_host_facts.h"
#include "driver/options/usage.h"
#include "output/lv_time.h"

namespace ovrik {

namespace {

bool is_help_request(argument_list& args) {
  for (const char* name : {"-h", "-help", "/?", "--help"}) {
    if (take_flag(name, args)) return true;
  }
  return args.size() == 1;
}

/// The present date and time, separated by a blank.
std::string present_time(const argument_list& args) {
  std::string date_format = "mm/dd/yyyy";
  peek_option("-dateformat", date_format, args);
  date_time_writer writer;
  compile_date_time(writer, date_format, "hh:mm:ss.xxx", false);
  using ticks = std::chrono::duration<int64_t, std::ratio<1, ticks_per_second>>;
  const auto since_epoch = std::chrono::system_clock::now().time_since_epoch();
  const auto since_unix_epoch = std::chrono::duration_cast<ticks>(since_epoch).count();
  time_value now;
  decode_filetime(now, unix_epoch_filetime + static_cast<uint64_t>(since_unix_epoch));
  std::string date_text;
  std::string time_text;
  format_date_time(date_text, time_text, now, writer);
  return date_text + ' ' + time_text;
}

std::string host_line(const argument_list& args) {
  const host_facts facts = collect_host_facts();
  std::string line = "run time: " + present_time(args) + " UTC;computer: " + facts.computer +
                     ";host: " + (facts.is_64_bit ? "64-bit" : "32-bit");
  for (const std::string* fact :
       {&facts.system_family, &facts.short_version, &facts.full_version, &facts.user}) {
    line += ';' + *fact;
  }
  if (facts.on_network_drive) line += ";program drive<~>";
  if (facts.on_removable_drive) line += ";program drive:=";
  return line + '\n';
}

}  // namespace

bool prepare_command_line(argument_list& args, std::string& header_text) {
  if (args.empty()) return false;
  if (is_help_request(args)) {
    print_usage(args.empty() ? std::string() : args.front());
    return true;
  }
  header_text = host_line(args);
  header_text += "\"command line: ";
  if (peek_flag("-pipe", args)) header_text += "<filelist> ... | ";
  header_text += clean_text(joined_arguments(args, '\'')) + "\"\n";
  return false;
}

}  // namespace ovrik
