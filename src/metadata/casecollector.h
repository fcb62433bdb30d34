#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "common/missing.h"
#include "metadata/casebuffers.h"
#include "metadata/categorycode.h"

namespace MCBinning {

// Collects the valid cases of files that are read in step, and their weights. `Case` is a
// kind of tuple, or what stands for it without weights.
template <typename Case>
class CaseCollector {
 public:
  static constexpr bool kHasWeight =
      std::is_same_v<Case, BINDataTuple> || std::is_same_v<Case, EFBINDataTuple>;

  // Requires room for every case to come.
  explicit CaseCollector(Case* cases) : fCases(cases), fMissing(MCMV::Missing()) {}

  // The next cases of the files; null for a file that there is not. Without weights every
  // case weighs 1.
  void Add(const double* targets, const double* weights, const double* values, std::size_t count) {
    if (weights == nullptr) {
      for (std::size_t i = 0; i < count; ++i) Store(targets, values, i, 1.0);
      // The sum of ones, without adding them up.
      fTotalWeightWithMissing += static_cast<double>(count);
      fTotalWeight = static_cast<double>(fCount);
      return;
    }
    for (std::size_t i = 0; i < count; ++i) {
      const double weight = weights[i];
      if (weight == fMissing) continue;
      fTotalWeightWithMissing += weight;
      if (Store(targets, values, i, weight)) fTotalWeight += weight;
    }
  }

  std::size_t GetCount() const { return fCount; }
  double GetTotalWeight() const { return fTotalWeight; }
  double GetTotalWeightWithMissing() const { return fTotalWeightWithMissing; }
  unsigned int GetLargestTarget() const { return fLargestTarget; }

 private:
  // Writes the case to the next free entry, which stays free when the case is not valid.
  bool Store(const double* targets, const double* values, std::size_t i, double weight) {
    const double value = values[i];
    bool isValid = value != fMissing;
    std::uint8_t target = 0;
    if constexpr (kHasTarget<Case>) {
      // Every stored code lies in 0 .. 255, unless the host has given the missing value
      // another meaning since: what no int can hold is missing still.
      const int code = ToCategoryCode(targets[i]);
      isValid = isValid && targets[i] != fMissing && code != kLargestCategoryCode + 1;
      target = static_cast<std::uint8_t>(code);
      if (isValid) fLargestTarget = std::max<unsigned int>(fLargestTarget, target);
    }
    fCases[fCount] = Make(value, target, weight);
    fCount += isValid ? 1 : 0;
    return isValid;
  }

  static Case Make(double value, std::uint8_t target, double weight) {
    if constexpr (kHasTarget<Case> && kHasWeight) {
      return {value, target, weight};
    } else if constexpr (kHasWeight) {
      return {value, weight};
    } else if constexpr (kHasTarget<Case>) {
      return {value, target};
    } else {
      return {value};
    }
  }

  Case* const fCases;
  const double fMissing;
  std::size_t fCount = 0;
  double fTotalWeight = 0.0;
  double fTotalWeightWithMissing = 0.0;
  unsigned int fLargestTarget = 0;
};

}  // namespace MCBinning
