#pragma once

#include <cstdint>
#include <type_traits>

#include "metadata/bindatatuple.h"
#include "metadata/efbindatatuple.h"

namespace MCBinning {

// What stands for a tuple while all weights are 1: less to sort and to read. Whatever reads
// cases takes tuples or these alike.
struct UnweightedCase {
  static constexpr double weight = 1.0;
  double value;
  std::uint64_t target;
};

struct UnweightedEFCase {
  static constexpr double weight = 1.0;
  double value;
};

// Whether such cases belong to supervised binning.
template <typename Case>
inline constexpr bool kHasTarget =
    std::is_same_v<Case, BINDataTuple> || std::is_same_v<Case, UnweightedCase>;

inline BINDataTuple ToTuple(const UnweightedCase& item) {
  return {item.value, static_cast<std::uint8_t>(item.target), UnweightedCase::weight};
}

inline EFBINDataTuple ToTuple(const UnweightedEFCase& item) {
  return {item.value, UnweightedEFCase::weight};
}

}  // namespace MCBinning
