#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

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

// Whether all of so many values, which `valueAt` answers, are from 0.0 to below `end`, which is
// above 0; false too where one is -0.0. By their bits, which ascend with numbers from 0.0 on: in
// 64-bit integers without a jump, which vector instructions do some at a time.
template <typename ValueAt>
bool AreFromZeroTo(double end, std::size_t count, const ValueAt& valueAt) {
  const std::uint64_t last = std::bit_cast<std::uint64_t>(end) - 1;
  std::uint64_t all = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto bits = std::bit_cast<std::uint64_t>(valueAt(i));
    all |= bits | (last - bits);  // the sign, and that of the distance to the last number
  }
  return all >> 63 == 0;
}

inline bool IsCategoryCode(int code) { return code >= 0 && code <= kLargestCategoryCode; }

}  // namespace MCBinning
