#include "driver/host/wow64_redirect_adt_win32.h"

#include "base/windows_api_win32.h"

namespace ovrik {

namespace {

/// The functions that a 64-bit Windows has for 32-bit programs; both or none.
struct redirection_functions {
  decltype(Wow64DisableWow64FsRedirection)* disable = nullptr;
  decltype(Wow64RevertWow64FsRedirection)* revert = nullptr;
};

const redirection_functions& redirection() {
  static const redirection_functions found = [] {
    redirection_functions functions;
    HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    functions.disable = exported<decltype(Wow64DisableWow64FsRedirection)>(
        kernel, "Wow64DisableWow64FsRedirection");
    functions.revert =
        exported<decltype(Wow64RevertWow64FsRedirection)>(kernel, "Wow64RevertWow64FsRedirection");
    if (functions.disable == nullptr || functions.revert == nullptr) return redirection_functions{};
    return functions;
  }();
  return found;
}

}  // namespace

wow64_redirect_adt::wow64_redirect_adt() {
  m_disabled = redirection().disable != nullptr && redirection().disable(&m_state) != 0;
}

wow64_redirect_adt::~wow64_redirect_adt() {
  if (m_disabled) redirection().revert(m_state);
}

}  // namespace ovrik
