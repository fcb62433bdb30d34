#pragma once

namespace MCBinning {

// Target codes are kept in 8 bits.
constexpr int kLargestCategoryCode = 255;

// The category code that a value carries, truncated towards zero. A NaN, an infinity and
// whatever else no int can hold give a code beyond the largest.
inline int ToCategoryCode(double value) {
  constexpr double kIntRange = 2147483648.0;
  const bool fits = value > -kIntRange && value < kIntRange;
  return fits ? static_cast<int>(value) : kLargestCategoryCode + 1;
}

inline bool IsCategoryCode(int code) { return code >= 0 && code <= kLargestCategoryCode; }

}  // namespace MCBinning
