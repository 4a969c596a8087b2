#include "driver/host/wow64_redirect_adt_win32.h"

namespace ovrik {

wow64_redirect_adt::wow64_redirect_adt() {
  HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  auto* const disable =
      exported<decltype(Wow64DisableWow64FsRedirection)>(kernel, "Wow64DisableWow64FsRedirection");
  auto* const revert =
      exported<decltype(Wow64RevertWow64FsRedirection)>(kernel, "Wow64RevertWow64FsRedirection");
  if (disable != nullptr && revert != nullptr && disable(&m_state) != 0) m_revert = revert;
}

wow64_redirect_adt::~wow64_redirect_adt() {
  if (m_revert != nullptr) m_revert(m_state);
}

}  // namespace ovrik
