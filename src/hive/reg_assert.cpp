#include "hive/reg_assert.h"

#include <cstdio>
#include <cstdlib>

namespace ovrik {

void reg_assert_failed(const char* expression, unsigned line) {
  std::fprintf(stderr, "Assertion failed: %s, file reg_clas, line %u\n", expression, line);
  std::abort();
}

}  // namespace ovrik
