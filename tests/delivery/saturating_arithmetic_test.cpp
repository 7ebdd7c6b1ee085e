#include "delivery/saturating_arithmetic.h"

#include <gtest/gtest.h>

namespace {

TEST(SaturatingArithmeticTest, AddsAndSubtractsExactlyWithinTheRangeAndHoldsTheNearerEndBeyond) {
  EXPECT_EQ(SaturatingAdd(5, -3), 2);
  EXPECT_EQ(SaturatingAdd(kLargestInt64, 1), kLargestInt64);
  EXPECT_EQ(SaturatingAdd(kSmallestInt64, -1), kSmallestInt64);
  EXPECT_EQ(SaturatingSubtract(5, 3), 2);
  EXPECT_EQ(SaturatingSubtract(-5, -3), -2);
  EXPECT_EQ(SaturatingSubtract(kLargestInt64, -1), kLargestInt64);
  EXPECT_EQ(SaturatingSubtract(kSmallestInt64, 1), kSmallestInt64);
}

}  // namespace
