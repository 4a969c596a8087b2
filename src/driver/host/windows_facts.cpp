#include "driver/host/windows_facts.h"

#include <initializer_list>
#include <iterator>

namespace ovrik {

namespace {

/// A member of the administrators by what the token says; by the older call where it says nothing.
bool is_administrator(const windows_calls& system, elevation& kind) {
  kind = elevation::standard;
  const os_version_state version = os_version(system, 1);
  const bool has_split_tokens = version.major > 6 || (version.major == 6 && version.minor >= 1);
  if (!has_split_tokens) return system.is_user_an_admin();
  const auto token = system.process_token();
  if (token == nullptr || !token->get_elevation(kind) || kind != elevation::limited) {
    return system.is_user_an_admin();
  }
  const auto full = token->linked();
  return full != nullptr && full->has_administrators();
}

/// The letter of the drive that the path begins with, 0 if it begins with none.
char drive_of(const std::string& path) {
  return path.size() >= 2 && path[1] == ':' ? path[0] : '\0';
}

/// What kind of drive the program was started from; a path without a drive is one of a network.
uint32_t drive_type_of(const windows_calls& system, const std::string& program) {
  const char drive = drive_of(program);
  return drive == '\0' ? network_drive : system.drive_type(drive);
}

std::string numbers(std::initializer_list<uint32_t> parts) {
  std::string text;
  for (const uint32_t part : parts) {
    if (!text.empty()) text += '.';
    text += std::to_string(part);
  }
  return text;
}

std::string short_version(const os_version_state& version, const system_edition& edition) {
  constexpr const char* products[] = {"", "workstation", "domain-controller", "server"};
  std::string text = numbers({version.major, version.minor}) + '.';
  if (edition.product_type < std::size(products)) text += products[edition.product_type];
  if (edition.service_pack_major != 0) {
    text += ".sp." + numbers({edition.service_pack_major, edition.service_pack_minor});
  }
  return text;
}

}  // namespace

os_version_state os_version(const windows_calls& system, uint32_t last_minor) {
  os_version_state version;
  if (!system.is_major_version_at_least(6)) return version;
  version.major = 6;
  for (uint32_t minor = 1; minor <= last_minor; ++minor) {
    if (!system.is_minor_version_at_least(minor)) return version;
    version.minor = minor;
  }
  module_version kernel;
  if (!system.kernel_version(kernel)) return version;
  version.major = kernel.high >> 16;
  version.minor = kernel.high & 0xFFFF;
  version.build = kernel.low >> 16;
  return version;
}

bool have_admin_rights(const windows_calls& system) {
  elevation kind = elevation::standard;
  return is_administrator(system, kind) && (kind == elevation::standard || kind == elevation::full);
}

host_facts facts_of_windows(const windows_calls& system) {
  constexpr uint32_t amd64_processor = 8664;
  constexpr uint32_t itanium_processor = 2200;
  host_facts facts;
  const uint32_t processor = system.processor_type();
  facts.is_64_bit = processor == amd64_processor || processor == itanium_processor;
  facts.system_family = "Windows";

  const os_version_state version = os_version(system, 2);
  system_edition edition;
  system.edition(edition);
  facts.short_version = short_version(version, edition);
  facts.full_version = numbers({version.major, version.minor, version.build});

  std::string program;
  system.program_path(program);
  const uint32_t drive = drive_type_of(system, program);
  facts.on_network_drive = drive == network_drive;
  facts.on_removable_drive = drive == removable_drive;
  facts.computer = "<unk>";
  system.computer_name(facts.computer);
  if (facts.on_network_drive) facts.computer += " [remote]";
  system.user_name(facts.user);
  return facts;
}

}  // namespace ovrik
