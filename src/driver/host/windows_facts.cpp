#include "driver/host/windows_facts.h"

#include <initializer_list>
#include <iterator>

#include "base/drive_letter.h"

namespace ovrik {

namespace {

/// Loads a library of the system that not every run needs and that is slow to load. It is the one
/// in the system's own folder, never one that lies beside the program. Nothing: it does not load.
std::unique_ptr<system_library> load_from_system(const windows_calls& system,
                                                 const std::string& name) {
  // A 32-bit program on a 64-bit Windows cannot load what is in the system's folder, because the
  // redirection of folders is off.
  std::string folder;
  const bool found = (system.is_32_bit_program() && system.system_folder_of_32_bit(folder)) ||
                     system.system_folder(folder);
  return found ? system.load_library(folder + '\\' + name) : nullptr;
}

/// The version of kernel32. False: the system does not tell.
bool read_kernel_version(const windows_calls& system, module_version& version) {
  std::string folder;
  if (!system.system_folder(folder)) return false;
  // Without its whole path it would be looked for beside the program first.
  const std::string kernel = folder + "\\kernel32.dll";
  // Since Windows 8 every program has loaded a library with the functions for it.
  const auto loaded = system.loaded_library("kernelbase.dll");
  if (loaded != nullptr && loaded->read_module_version(kernel, version)) return true;
  const auto library = load_from_system(system, "version.dll");
  return library != nullptr && library->read_module_version(kernel, version);
}

bool is_user_an_admin(const windows_calls& system) {
  const auto library = load_from_system(system, "shell32.dll");
  return library != nullptr && library->is_user_an_admin();
}

void read_user_name(const windows_calls& system, std::string& name) {
  // The call loads this library by itself, but a 32-bit program would not find it.
  std::unique_ptr<system_library> library;
  if (system.is_32_bit_program()) library = load_from_system(system, "sspicli.dll");
  system.user_name(name);
}

/// A member of the administrators by what the token says; by the older call where it says nothing.
bool is_administrator(const windows_calls& system, elevation& kind) {
  kind = elevation::standard;
  const os_version_state version = os_version(system, 1);
  const bool has_split_tokens = version.major > 6 || (version.major == 6 && version.minor >= 1);
  if (!has_split_tokens) return is_user_an_admin(system);
  const auto token = system.process_token();
  if (token == nullptr || !token->get_elevation(kind) || kind != elevation::limited) {
    return is_user_an_admin(system);
  }
  const auto full = token->linked();
  return full != nullptr && full->has_administrators();
}

/// What kind of drive the program was started from; a path without a drive is one of a network.
uint32_t drive_type_of(const windows_calls& system, const std::string& program) {
  return begins_with_drive(program) ? system.drive_type(program[0]) : network_drive;
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
  if (!read_kernel_version(system, kernel)) return version;
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
  read_user_name(system, facts.user);
  return facts;
}

}  // namespace ovrik
