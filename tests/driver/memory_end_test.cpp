// Memory that ends in the middle of a source.
#include "driver/memory_end.h"

#include <gtest/gtest.h>

namespace {

TEST(memory_end, is_said_and_ends_the_step_alone) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(ovrik::unless_memory_ends("file", [] { return 7; }), 7);
  EXPECT_EQ(ovrik::unless_memory_ends("file", []() -> int { throw std::bad_alloc(); }), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "prob allocating memory for file\n");
}

}  // namespace
