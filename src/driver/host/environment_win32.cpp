#include "base/windows_api_win32.h"
#include "driver/host/environment.h"

namespace ovrik {

bool environment_value(const std::string& name, std::string& value) {
  const std::wstring wide = to_wide(name);
  if (wide.empty()) return false;
  SetLastError(ERROR_SUCCESS);
  const DWORD size = GetEnvironmentVariableW(wide.c_str(), nullptr, 0);  // with the terminator
  if (size == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND) return false;
  std::wstring found(size, L'\0');
  found.resize(GetEnvironmentVariableW(wide.c_str(), found.data(), size));
  value = from_wide(found);
  return true;
}

}  // namespace ovrik
