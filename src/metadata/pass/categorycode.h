#pragma once

namespace MCBinning {

// Target codes are kept in 8 bits.
constexpr int kLargestCategoryCode = 255;

// Whether a value, truncated, is an int.
inline bool HoldsInt(double value) {
  constexpr double kIntRange = 2147483648.0;
  return value > -kIntRange && value < kIntRange;
}

// The category code that a value carries, truncated towards zero. A NaN, an infinity and
// whatever else no int can hold give a code beyond the largest.
inline int ToCategoryCode(double value) {
  return HoldsInt(value) ? static_cast<int>(value) : kLargestCategoryCode + 1;
}

inline bool IsCategoryCode(int code) { return code >= 0 && code <= kLargestCategoryCode; }

}  // namespace MCBinning
