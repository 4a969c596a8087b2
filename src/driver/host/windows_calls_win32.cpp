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

/// What a call for a folder writes; empty if it says that it cannot.
std::wstring folder_by(UINT(WINAPI* call)(wchar_t* buffer, UINT size)) {
  std::wstring folder(512, L'\0');
  const UINT length = call(folder.data(), static_cast<UINT>(folder.size()));
  folder.resize(length < folder.size() ? length : 0);
  return folder;
}

/// The folder of the libraries that this program can load. A 32-bit program on a 64-bit Windows
/// does not find them in the system's folder while the redirection is off.
std::wstring library_folder() {
  const std::wstring folder =
      sizeof(void*) == 4 ? folder_by(GetSystemWow64DirectoryW) : std::wstring();
  return folder.empty() ? folder_by(GetSystemDirectoryW) : folder;
}

/// Sets `name` to what a call writes into a buffer of `size` units. False: it says that it cannot.
bool read_name(BOOL(WINAPI* call)(wchar_t* buffer, DWORD* size), DWORD size, std::string& name) {
  std::wstring buffer(size, L'\0');
  if (call(buffer.data(), &size) == 0) return false;
  name = from_wide(buffer.c_str());
  return true;
}

/// A library of the system that not every run needs and that is slow to load. It is that of the
/// system's own folder: whatever lies beside the program stays out.
class system_library {
 public:
  explicit system_library(const std::wstring& name)
      : m_module(name.empty() ? nullptr : LoadLibraryW((library_folder() + L'\\' + name).c_str())) {
  }
  ~system_library() {
    if (m_module != nullptr) FreeLibrary(m_module);
  }
  system_library(const system_library&) = delete;
  system_library& operator=(const system_library&) = delete;

  /// Null if the library could not be loaded or has no name.
  HMODULE module() const { return m_module; }

 private:
  HMODULE m_module;
};

/// Reads the product version of kernel32 by the functions of a library. False: it lacks them, or
/// they fail.
bool read_kernel_version(HMODULE library, module_version& version) {
  auto* const get_size =
      exported<decltype(GetFileVersionInfoSizeW)>(library, "GetFileVersionInfoSizeW");
  auto* const get_block = exported<decltype(GetFileVersionInfoW)>(library, "GetFileVersionInfoW");
  auto* const get_value = exported<decltype(VerQueryValueW)>(library, "VerQueryValueW");
  if (get_size == nullptr || get_block == nullptr || get_value == nullptr) return false;
  // With its whole path it is not looked for beside the program first.
  const std::wstring kernel = folder_by(GetSystemDirectoryW) + L"\\kernel32.dll";
  DWORD unused = 0;
  const DWORD size = get_size(kernel.c_str(), &unused);
  std::vector<uint8_t> block(size);
  void* place = nullptr;
  UINT length = 0;
  if (size == 0 || get_block(kernel.c_str(), 0, size, block.data()) == 0 ||
      get_value(block.data(), L"\\", &place, &length) == 0 || length < sizeof(VS_FIXEDFILEINFO)) {
    return false;
  }
  const auto* facts = static_cast<const VS_FIXEDFILEINFO*>(place);
  version = {facts->dwProductVersionMS, facts->dwProductVersionLS};
  return true;
}

class calls_of_windows : public windows_calls {
 public:
  bool is_major_version_at_least(uint32_t major) const override {
    return is_version_at_least(VER_MAJORVERSION, major, 0);
  }

  bool is_minor_version_at_least(uint32_t minor) const override {
    return is_version_at_least(VER_MINORVERSION, 0, minor);
  }

  bool kernel_version(module_version& version) const override {
    // Since Windows 8 every program has these functions loaded.
    return read_kernel_version(GetModuleHandleW(L"kernelbase.dll"), version) ||
           read_kernel_version(system_library(L"version.dll").module(), version);
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

  bool is_user_an_admin() const override {
    const system_library library(L"shell32.dll");
    auto* const call = exported<BOOL WINAPI()>(library.module(), "IsUserAnAdmin");
    return call != nullptr && call() != 0;
  }

  std::unique_ptr<access_token> process_token() const override {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return nullptr;
    return std::make_unique<token_of_windows>(token);
  }

  bool computer_name(std::string& name) const override {
    return read_name(GetComputerNameW, 4096, name);
  }

  bool user_name(std::string& name) const override {
    // The call loads this library, which a 32-bit program does not find then.
    const system_library asked(sizeof(void*) == 4 ? L"sspicli.dll" : L"");
    return read_name(GetUserNameW, 512, name);
  }

  bool program_path(std::string& path) const override {
    std::wstring buffer(32768, L'\0');
    const DWORD length =
        GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0 || length >= buffer.size()) return false;
    path = from_wide(std::wstring_view(buffer).substr(0, length));
    return true;
  }

  bool system_folder(std::string& path) const override {
    const std::wstring folder = folder_by(GetSystemDirectoryW);
    if (!folder.empty()) path = from_wide(folder);
    return !folder.empty();
  }

  uint32_t drive_type(char letter) const override {
    const char root[] = {letter, ':', '\\', '\0'};
    return GetDriveTypeA(root);
  }
};

}  // namespace

const windows_calls& running_windows() {
  static const calls_of_windows calls;
  return calls;
}

}  // namespace ovrik
