#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "metadata/bindatatuple.h"
#include "metadata/efbindatatuple.h"
#include "metadata/pass/packedcase.h"

namespace MCBinning {

// What stands for a tuple while all weights are 1: less to sort and to read. A PackedCase stands
// for one of these. Whatever reads cases takes tuples or these alike, by Unpacked().
struct UnweightedCase {
  static constexpr double weight = 1.0;
  double value;
  std::uint64_t target;
};

struct UnweightedEFCase {
  static constexpr double weight = 1.0;
  double value;
};

template <typename Case>
inline constexpr bool kIsPacked = false;
template <int kTargetBits>
inline constexpr bool kIsPacked<PackedCase<kTargetBits>> = true;

// Whether such cases belong to supervised binning.
template <typename Case>
inline constexpr bool kHasTarget =
    std::is_same_v<Case, BINDataTuple> || std::is_same_v<Case, UnweightedCase> || kIsPacked<Case>;

// Whether such cases have a target and weigh 1 each.
template <typename Case>
inline constexpr bool kIsCounted = std::is_same_v<Case, UnweightedCase> || kIsPacked<Case>;

// The case itself, or what a packed one stands for.
template <typename Case>
decltype(auto) Unpacked(const Case& item) {
  if constexpr (kIsPacked<Case>) {
    return UnweightedCase{item.GetValue(), item.GetTarget()};
  } else {
    return (item);
  }
}

// Of a case, or of what is its value.
inline double ValueOf(double value) { return value; }
template <typename Case>
double ValueOf(const Case& item) {
  return Unpacked(item).value;
}

// Of the values, some at equal distances. Requires as many.
template <std::size_t kSize, typename Source>
std::array<double, kSize> SampleOf(const Source* sources, std::size_t count) {
  std::array<double, kSize> sample;
  for (std::size_t i = 0; i < kSize; ++i) sample[i] = ValueOf(sources[count / kSize * i]);
  return sample;
}

template <typename Case>
bool HaveSameValue(const Case& a, const Case& b) {
  if constexpr (kIsPacked<Case>) {
    return a.GetKey() == b.GetKey();
  } else {
    return a.value == b.value;
  }
}

template <typename Case>
unsigned int CountDistinctSorted(const Case* sorted, std::size_t count) {
  unsigned int distinct = count == 0 ? 0 : 1;
  for (std::size_t i = 1; i < count; ++i) {
    if (!HaveSameValue(sorted[i], sorted[i - 1])) ++distinct;
  }
  return distinct;
}

inline BINDataTuple ToTuple(const UnweightedCase& item) {
  return {item.value, static_cast<std::uint8_t>(item.target), UnweightedCase::weight};
}

inline EFBINDataTuple ToTuple(const UnweightedEFCase& item) {
  return {item.value, UnweightedEFCase::weight};
}

}  // namespace MCBinning
