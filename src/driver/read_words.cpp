#include "driver/read_words.h"

#include <vector>

#include "driver/host/console.h"

namespace ovrik {

namespace {

constexpr size_t most_lines = 8;

unsigned long long printable(uint64_t value) { return value; }

}  // namespace

bool say_read_faults(read_faults& faults, diagnostics_log& log) {
  if (faults.empty()) return false;
  const std::vector<read_fault> all = faults.all();
  uint64_t total = 0;
  size_t lines = 0;
  clear_progress();
  for (const read_fault& fault : all) {
    const auto length = printable(fault.length);
    const auto offset = printable(fault.offset);
    const char* source = fault.source.c_str();
    if (lines++ < most_lines) {
      print_message("prob reading %s: %llu bytes at offset 0x%llx\n", source, length, offset);
    }
    diag_printf(log, "prob reading %s: %llu bytes at offset 0x%llx", source, length, offset);
    total += fault.length;
  }
  if (all.size() > 1) {
    print_message("prob reading: %llu bytes in %zu places in all\n", printable(total), all.size());
  }
  faults.clear();
  return true;
}

}  // namespace ovrik
