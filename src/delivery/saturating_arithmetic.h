// 64-bit integer arithmetic for sizes and sample positions made of the host's request values and
// the clip's description: a result beyond the range of int64_t is held at the nearer end of the
// range instead of overflowing, so that absurd values give an absurd answer, never undefined
// behaviour. Within the range the results are exact, as plain arithmetic gives them.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

constexpr int64_t kLargestInt64 = std::numeric_limits<int64_t>::max();
constexpr int64_t kSmallestInt64 = std::numeric_limits<int64_t>::min();

inline int64_t SaturatingAdd(int64_t a, int64_t b) {
  if (b > 0 && a > kLargestInt64 - b) return kLargestInt64;
  if (b < 0 && a < kSmallestInt64 - b) return kSmallestInt64;
  return a + b;
}

inline int64_t SaturatingSubtract(int64_t a, int64_t b) {
  if (b < 0 && a > kLargestInt64 + b) return kLargestInt64;
  if (b > 0 && a < kSmallestInt64 + b) return kSmallestInt64;
  return a - b;
}

inline uint64_t Magnitude(int64_t value) {
  return value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
}

inline int64_t SaturatingMultiply(int64_t a, int64_t b) {
  if (a == 0 || b == 0) return 0;
  const bool negative = (a < 0) != (b < 0);
  const uint64_t limit = Magnitude(negative ? kSmallestInt64 : kLargestInt64);
  if (Magnitude(a) > limit / Magnitude(b)) return negative ? kSmallestInt64 : kLargestInt64;
  const uint64_t product = Magnitude(a) * Magnitude(b);
  return negative ? static_cast<int64_t>(0 - product) : static_cast<int64_t>(product);
}

// REQUIRES: divisor != 0. The one quotient beyond the range, the smallest value over -1, is held.
inline int64_t SaturatingDivide(int64_t dividend, int64_t divisor) {
  if (dividend == kSmallestInt64 && divisor == -1) return kLargestInt64;
  return dividend / divisor;
}

// Truncated toward zero, as a cast truncates; not-a-number gives 0.
inline int64_t SaturatingFromDouble(double value) {
  constexpr double kTwoToThe63 = 9223372036854775808.0;
  if (std::isnan(value)) return 0;
  if (value >= kTwoToThe63) return kLargestInt64;
  if (value < -kTwoToThe63) return kSmallestInt64;
  return static_cast<int64_t>(value);
}
