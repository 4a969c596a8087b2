// The calls that tell about a running Windows, in plain types, so that what the program makes of
// their answers can be tried on every host.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace ovrik {

/// What a token says about the rights of its process. Numbers are Windows' own.
enum class elevation : uint32_t {
  standard = 1,  ///< no other token goes with it
  full = 2,      ///< the elevated one of two
  limited = 3,   ///< the other one: the user could elevate
};

/// The token of a process, or the one that goes with it.
class access_token {
 public:
  access_token() = default;
  virtual ~access_token() = default;
  access_token(const access_token&) = delete;
  access_token& operator=(const access_token&) = delete;

  /// False: the system does not tell, as one without split tokens.
  virtual bool get_elevation(elevation& kind) const = 0;

  /// The token that goes with this one; nothing if the system does not give it.
  virtual std::unique_ptr<access_token> linked() const = 0;

  /// True if the token has the administrators' group, and has it enabled.
  virtual bool has_administrators() const = 0;
};

/// The product version of a system module, as its version block has it.
struct module_version {
  uint32_t high = 0;  ///< major number in the upper half, minor in the lower one
  uint32_t low = 0;   ///< build number in the upper half
};

/// Edition and service pack of the system.
struct system_edition {
  uint32_t product_type = 0;  ///< 1 workstation, 2 domain controller, 3 server
  uint32_t service_pack_major = 0;
  uint32_t service_pack_minor = 0;
};

constexpr uint32_t removable_drive = 2;
constexpr uint32_t network_drive = 4;

/// One call each. An operation that returns bool leaves its result alone on false, which is a
/// failed call.
class windows_calls {
 public:
  windows_calls() = default;
  virtual ~windows_calls() = default;
  windows_calls(const windows_calls&) = delete;
  windows_calls& operator=(const windows_calls&) = delete;

  virtual bool is_major_version_at_least(uint32_t major) const = 0;
  virtual bool is_minor_version_at_least(uint32_t minor) const = 0;
  virtual bool kernel_version(module_version& version) const = 0;
  virtual bool edition(system_edition& found) const = 0;
  virtual uint32_t processor_type() const = 0;

  virtual bool is_user_an_admin() const = 0;
  virtual std::unique_ptr<access_token> process_token() const = 0;  ///< nothing: it does not open

  // Text is UTF-8.
  virtual bool computer_name(std::string& name) const = 0;
  virtual bool user_name(std::string& name) const = 0;
  virtual bool program_path(std::string& path) const = 0;
  virtual bool system_folder(std::string& path) const = 0;
  virtual uint32_t drive_type(char letter) const = 0;  ///< of the drive with that letter
};

/// Those of the Windows that the program runs on.
const windows_calls& running_windows();

}  // namespace ovrik
