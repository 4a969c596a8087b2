#include <vector>

#include "base/windows_api_win32.h"
#include "driver/host/windows_calls.h"

namespace ovrik {

namespace {

class token_of_windows : public access_token {
 public:
  explicit token_of_windows(HANDLE handle) : m_handle(handle) {}
  ~token_of_windows() override { CloseHandle(m_handle); }

  bool get_elevation(elevation& kind) const override {
    TOKEN_ELEVATION_TYPE found = TokenElevationTypeDefault;
    DWORD size = 0;
    if (GetTokenInformation(m_handle, TokenElevationType, &found, sizeof found, &size) == 0) {
      return false;
    }
    kind = static_cast<elevation>(found);
    return true;
  }

  std::unique_ptr<access_token> linked() const override {
    TOKEN_LINKED_TOKEN found{};
    DWORD size = 0;
    if (GetTokenInformation(m_handle, TokenLinkedToken, &found, sizeof found, &size) == 0) {
      return nullptr;
    }
    return std::make_unique<token_of_windows>(found.LinkedToken);
  }

  bool has_administrators() const override {
    BYTE group[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof group;
    BOOL member = FALSE;
    return CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, group, &size) != 0 &&
           CheckTokenMembership(m_handle, group, &member) != 0 && member != 0;
  }

 private:
  HANDLE m_handle;
};

bool is_version_at_least(DWORD mask, uint32_t major, uint32_t minor) {
  OSVERSIONINFOEXA wanted{};
  wanted.dwOSVersionInfoSize = sizeof wanted;
  wanted.dwMajorVersion = major;
  wanted.dwMinorVersion = minor;
  return VerifyVersionInfoA(&wanted, mask, VerSetConditionMask(0, mask, VER_GREATER_EQUAL)) != 0;
}

/// Sets `path` to what a call for a folder writes. False: it says that it cannot.
bool read_folder(UINT(WINAPI* call)(wchar_t* buffer, UINT size), std::string& path) {
  std::wstring folder(512, L'\0');
  const UINT length = call(folder.data(), static_cast<UINT>(folder.size()));
  if (length == 0 || length >= folder.size()) return false;
  path = from_wide(std::wstring_view(folder).substr(0, length));
  return true;
}

/// Sets `name` to what a call writes into a buffer of `size` units. False: it says that it cannot.
bool read_name(BOOL(WINAPI* call)(wchar_t* buffer, DWORD* size), DWORD size, std::string& name) {
  std::wstring buffer(size, L'\0');
  if (call(buffer.data(), &size) == 0) return false;
  name = from_wide(buffer.c_str());
  return true;
}

class library_of_windows : public system_library {
 public:
  library_of_windows(HMODULE module, bool was_loaded_here)
      : m_module(module), m_was_loaded_here(was_loaded_here) {}
  ~library_of_windows() override {
    if (m_was_loaded_here) FreeLibrary(m_module);
  }

  bool read_module_version(const std::string& path, module_version& version) const override {
    auto* const get_size =
        exported<decltype(GetFileVersionInfoSizeW)>(m_module, "GetFileVersionInfoSizeW");
    auto* const get_block =
        exported<decltype(GetFileVersionInfoW)>(m_module, "GetFileVersionInfoW");
    auto* const get_value = exported<decltype(VerQueryValueW)>(m_module, "VerQueryValueW");
    if (get_size == nullptr || get_block == nullptr || get_value == nullptr) return false;
    const std::wstring file = to_wide(path);
    DWORD unused = 0;
    const DWORD size = get_size(file.c_str(), &unused);
    std::vector<uint8_t> block(size);
    void* place = nullptr;
    UINT length = 0;
    if (size == 0 || get_block(file.c_str(), 0, size, block.data()) == 0 ||
        get_value(block.data(), L"\\", &place, &length) == 0 || length < sizeof(VS_FIXEDFILEINFO)) {
      return false;
    }
    const auto* facts = static_cast<const VS_FIXEDFILEINFO*>(place);
    version = {facts->dwProductVersionMS, facts->dwProductVersionLS};
    return true;
  }

  bool is_user_an_admin() const override {
    auto* const call = exported<BOOL WINAPI()>(m_module, "IsUserAnAdmin");
    return call != nullptr && call() != 0;
  }

 private:
  HMODULE m_module;
  bool m_was_loaded_here;
};

/// Nothing for a null module.
std::unique_ptr<system_library> library_of(HMODULE module, bool was_loaded_here) {
  if (module == nullptr) return nullptr;
  return std::make_unique<library_of_windows>(module, was_loaded_here);
}

class calls_of_windows : public windows_calls {
 public:
  bool is_major_version_at_least(uint32_t major) const override {
    return is_version_at_least(VER_MAJORVERSION, major, 0);
  }

  bool is_minor_version_at_least(uint32_t minor) const override {
    return is_version_at_least(VER_MINORVERSION, 0, minor);
  }

  bool edition(system_edition& found) const override {
    OSVERSIONINFOEXW facts{};
    facts.dwOSVersionInfoSize = sizeof facts;
    if (GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&facts)) == 0) return false;
    found = {facts.wProductType, facts.wServicePackMajor, facts.wServicePackMinor};
    return true;
  }

  uint32_t processor_type() const override {
    SYSTEM_INFO facts{};
    GetNativeSystemInfo(&facts);
    return facts.dwProcessorType;
  }

  bool is_32_bit_program() const override { return sizeof(void*) == 4; }

  std::unique_ptr<access_token> process_token() const override {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return nullptr;
    return std::make_unique<token_of_windows>(token);
  }

  bool computer_name(std::string& name) const override {
    return read_name(GetComputerNameW, 4096, name);
  }

  bool user_name(std::string& name) const override { return read_name(GetUserNameW, 512, name); }

  bool program_path(std::string& path) const override {
    std::wstring buffer(32768, L'\0');
    const DWORD length =
        GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0 || length >= buffer.size()) return false;
    path = from_wide(std::wstring_view(buffer).substr(0, length));
    return true;
  }

  bool system_folder(std::string& path) const override {
    return read_folder(GetSystemDirectoryW, path);
  }

  bool system_folder_of_32_bit(std::string& path) const override {
    return read_folder(GetSystemWow64DirectoryW, path);
  }

  uint32_t drive_type(char letter) const override {
    const char root[] = {letter, ':', '\\', '\0'};
    return GetDriveTypeA(root);
  }

  std::unique_ptr<system_library> loaded_library(const std::string& name) const override {
    return library_of(GetModuleHandleW(to_wide(name).c_str()), false);
  }

  std::unique_ptr<system_library> load_library(const std::string& path) const override {
    return library_of(LoadLibraryW(to_wide(path).c_str()), true);
  }
};

}  // namespace

const windows_calls& running_windows() {
  static const calls_of_windows calls;
  return calls;
}

}  // namespace ovrik
