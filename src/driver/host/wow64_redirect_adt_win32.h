// The redirection of system folders that 64-bit Windows does for 32-bit programs.
#pragma once

#include "base/windows_api_win32.h"

namespace ovrik {

/// Turns the redirection off for the calling thread for as long as it lives, so that paths mean
/// what they say. Does nothing on a Windows without redirection.
class wow64_redirect_adt {
 public:
  wow64_redirect_adt();
  virtual ~wow64_redirect_adt();
  wow64_redirect_adt(const wow64_redirect_adt&) = delete;
  wow64_redirect_adt& operator=(const wow64_redirect_adt&) = delete;

 private:
  void* m_state = nullptr;  ///< what the redirection was, as the system keeps it
  decltype(Wow64RevertWow64FsRedirection)* m_revert = nullptr;  ///< null if it was not turned off
};

}  // namespace ovrik
