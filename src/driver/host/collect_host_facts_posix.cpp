#include <sys/utsname.h>
#include <unistd.h>

#include <fstream>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "driver/host/collect_host_facts.h"

namespace ovrik {

namespace {

/// The name of the effective user in the local password file, else its number. The system's own
/// look-up would load shared libraries into a static program.
std::string user_name() {
  std::string number = std::to_string(geteuid());
  std::ifstream accounts("/etc/passwd");
  for (std::string line; std::getline(accounts, line);) {
    const std::vector<std::string> fields = split(line, ':');
    if (fields.size() > 2 && fields[2] == number) return fields[0];
  }
  return number;
}

/// The numbers in front of the first character that is neither a digit nor a full stop.
std::string leading_version(std::string_view release) {
  return std::string(release.substr(0, release.find_first_not_of("0123456789.")));
}

}  // namespace

host_facts collect_host_facts() {
  host_facts facts;
  facts.computer = "<unk>";
  facts.user = user_name();
  utsname system{};
  if (uname(&system) != 0) return facts;
  const std::string_view machine = system.machine;
  facts.is_64_bit = machine.find("64") != std::string_view::npos;
  facts.system_family = system.sysname;
  facts.short_version = leading_version(system.release);
  facts.full_version = system.release;
  if (system.nodename[0] != '\0') facts.computer = system.nodename;
  return facts;
}

}  // namespace ovrik
