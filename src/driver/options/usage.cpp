#include "driver/options/usage.h"

#include <cstdio>

#include "base/version.h"
#include "driver/host/console.h"
#include "driver/options/option_scan.h"

namespace ovrik {

namespace {

constexpr const char* title =
    "ovrik, ver: " OVRIK_VERSION
    ": programs remembered by the Shim Cache of a Windows machine\n"
    "reads SYSTEM hives, raw cache values, disk images and lists of them; changes none\n";

constexpr const char* title_rule =
    "-----------------------------------------------------------------------------\n";

constexpr const char* options_text =
    "Usage:\n"
    " \n"
    "  ovrik -livesys                       = parse from live target\n"
    "  ovrik -hive <system hive>            = parse from specified hive\n"
    "  ovrik -image <file> [-offset <vol>]  = use image as source\n"
    "  ovrik -vmdk \"file1 | file2 | ..\"     = use VMWare VMDK vol\n"
    "  ovrik -binary <app compat file>      = parse raw data [16 MB max]\n"
    "  ovrik -extract <syshive> -out <file> = extract data into file\n"
    "  ovrik -vss <num>                     = Volume Shadow parse\n"
    "\n"
    " Basic options\n"
    "  -csv                      = output in comma separated value format\n"
    "  -csvl2t                   = log2timeline output\n"
    "  -bodyfile                 = sleuthkit output\n"
    "\n"
    " Additional options\n"
    "  -base10                   = output number in base10 vice std::hex output\n"
    "  -hostname <name>          = output will contain this hostname\n"
    "  -dateformat mm/dd/yyyy    = \"yyyy-mm-dd\" is the default\n"
    "  -timeformat hh:mm:ss      = \"hh:mm:ss.xxx\" is the default\n"
    "  -pair_datetime            = combine date/time into 1 field for csv\n"
    "  -no_whitespace            = remove whitespace between csv delimiter\n"
    "  -csv_separator \"|\"        = use a pipe char for csv separator\n"
    "  -pipe                     = pipe hives into ovrik for processing\n"
    "  -pipe_binary              = pipe binary app compat files into ovrik\n"
    "  -inc_slack                = process any slack space (win8 only)\n"
    "  -sort_by_name             = sort by path/file\n"
    "  -filter <*partial*|*.ext> = filters stdin data from -pipe option\n"
    " \n"
    " Experimental options\n"
    "  -all_controlsets          = process all ControlSets vice default\n"
    "\n";

}  // namespace

void print_usage(const std::string& program_path) {
  print_message("%s%s\n%s\n\n%s", title, title_rule, program_name_of(program_path).c_str(),
                options_text);
}

}  // namespace ovrik
