// What happens where the memory of the machine does not suffice for a source.
#pragma once

#include <cstdint>
#include <new>
#include <string>

#include "driver/host/console.h"

namespace ovrik {

/// Returns the exit value of `step`, which reads `path`; -1 if memory ended in it, which has been
/// said on standard error. What was written so far stays.
template <typename step>
int32_t unless_memory_ends(const std::string& path, const step& take) {
  try {
    return take();
  } catch (const std::bad_alloc&) {
    print_message("prob allocating memory for %s\n", path.c_str());
    return -1;
  }
}

}  // namespace ovrik
