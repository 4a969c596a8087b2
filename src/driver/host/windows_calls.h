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

/// A library of the system that this process has loaded; lets go of it at the end.
class system_library {
 public:
  system_library() = default;
  virtual ~system_library() = default;
  system_library(const system_library&) = delete;
  system_library& operator=(const system_library&) = delete;

  /// Reads the product version of the module file at `path` by the functions of this library.
  /// False: it lacks them, or they fail.
  virtual bool read_module_version(const std::string& path, module_version& version) const = 0;

  /// False also if the library lacks the function.
  virtual bool is_user_an_admin() const = 0;
};

/// Edition and service pack of the system.
struct system_edition {
  uint32_t product_type = 0;  ///< 1 workstation, 2 domain controller, 3 server
  uint32_t service_pack_major = 0;
  uint32_t service_pack_minor = 0;
};

constexpr uint32_t removable_drive = 2;
constexpr uint32_t network_drive = 4;

/// One call of the system each, without a decision. An operation that returns bool leaves its
/// result alone on false, which is a failed call.
class windows_calls {
 public:
  windows_calls() = default;
  virtual ~windows_calls() = default;
  windows_calls(const windows_calls&) = delete;
  windows_calls& operator=(const windows_calls&) = delete;

  virtual bool is_major_version_at_least(uint32_t major) const = 0;
  virtual bool is_minor_version_at_least(uint32_t minor) const = 0;
  virtual bool edition(system_edition& found) const = 0;
  virtual uint32_t processor_type() const = 0;
  virtual bool is_32_bit_program() const = 0;  ///< the running program, whatever the system is

  virtual std::unique_ptr<access_token> process_token() const = 0;  ///< nothing: it does not open

  // Text is UTF-8.
  virtual bool computer_name(std::string& name) const = 0;
  virtual bool user_name(std::string& name) const = 0;
  virtual bool program_path(std::string& path) const = 0;
  virtual bool system_folder(std::string& path) const = 0;
  virtual bool system_folder_of_32_bit(std::string& path) const = 0;  ///< false on a 32-bit Windows
  virtual uint32_t drive_type(char letter) const = 0;  ///< of the drive with that letter

  /// The library of that name if the process has it already, else nothing.
  virtual std::unique_ptr<system_library> loaded_library(const std::string& name) const = 0;

  /// Loads the library at `path`. Nothing: that fails.
  virtual std::unique_ptr<system_library> load_library(const std::string& path) const = 0;
};

/// Those of the Windows that the program runs on.
const windows_calls& running_windows();

}  // namespace ovrik
