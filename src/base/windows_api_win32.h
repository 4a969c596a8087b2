// The Windows headers, and text as their functions take it.
#pragma once

#include <windows.h>
#include <winioctl.h>

#include <string>
#include <string_view>

#include "base/wide_text.h"

namespace ovrik {

/// UTF-8 text for a function that takes wide characters, which are UTF-16 units here.
inline std::wstring to_wide(std::string_view text) {
  const std::u16string units = widen(text);
  return {units.begin(), units.end()};
}

/// What a function gave in wide characters, as UTF-8.
inline std::string from_wide(std::wstring_view text) {
  return narrow(std::u16string(text.begin(), text.end()));
}

/// The function of that name and type that a library of the system offers, null if it does not or
/// is not there.
template <typename function>
function* exported(HMODULE library, const char* name) {
  if (library == nullptr) return nullptr;
  return reinterpret_cast<function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace ovrik
