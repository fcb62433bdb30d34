#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

namespace MCBinning {

// Sorts cases ascending by value: equal values (-0.0 and 0.0 are equal) keep their order,
// NaN values of either sign come last, in their order too.
template <typename Tuple>
void SortByValue(std::vector<Tuple>& tuples) {
  std::stable_sort(tuples.begin(), tuples.end(), [](const Tuple& a, const Tuple& b) {
    return std::isnan(b.value) ? !std::isnan(a.value) : a < b;
  });
}

}  // namespace MCBinning
