#include "base/windows_api_win32.h"
#include "driver/wow64_redirect_adt.h"

namespace ovrik {

namespace {

/// The functions that a 64-bit Windows has for 32-bit programs; both or none.
struct redirection_functions {
  using disable_function = BOOL(WINAPI*)(void** state);
  using revert_function = BOOL(WINAPI*)(void* state);

  disable_function disable = nullptr;
  revert_function revert = nullptr;
};

template <typename function>
function exported(HMODULE module, const char* name) {
  return reinterpret_cast<function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

const redirection_functions& redirection() {
  static const redirection_functions found = [] {
    redirection_functions functions;
    HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    if (kernel == nullptr) return functions;
    using table = redirection_functions;
    functions.disable = exported<table::disable_function>(kernel, "Wow64DisableWow64FsRedirection");
    functions.revert = exported<table::revert_function>(kernel, "Wow64RevertWow64FsRedirection");
    if (functions.disable == nullptr || functions.revert == nullptr) return table{};
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
