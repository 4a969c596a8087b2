// What the program makes of the answers of a running Windows.
#pragma once

#include "driver/host/host_facts.h"
#include "driver/host/windows_calls.h"

namespace ovrik {

struct os_version_state {
  uint32_t major = 0;
  uint32_t minor = 0;
  uint32_t build = 0;
};

/// Tells the version as far as the system lets on: from 6.`last_minor` on it is that of the kernel,
/// because newer systems name an older version to a program that does not declare itself to them.
os_version_state os_version(const windows_calls& system, uint32_t last_minor);

/// True for an administrator whose process has an administrator's rights. False also for one who
/// would have to elevate first.
bool have_admin_rights(const windows_calls& system);

host_facts facts_of_windows(const windows_calls& system);

}  // namespace ovrik
