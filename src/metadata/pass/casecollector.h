#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "common/missing.h"
#include "common/prefetch.h"
#include "metadata/pass/cases.h"
#include "metadata/pass/categorycode.h"
#include "metadata/pass/loosecases.h"

namespace MCBinning {

// Stands for a target value that is no category.
inline constexpr std::uint16_t kNoTarget = 0xffff;

// Every stored code lies in 0 .. 255, unless the host has given the missing value another meaning
// since: what no int can hold is missing still.
inline std::uint16_t ToTarget(double value, double missing) {
  const bool isTarget = (value != missing) & HoldsInt(value);  // no jump
  const int code = static_cast<int>(isTarget ? value : 0.0) & kLargestCategoryCode;
  return isTarget ? static_cast<std::uint16_t>(code) : kNoTarget;
}

// The same for so many values. Those of a whole block are codes as a rule.
inline void ToTargets(const double* values, std::size_t count, double missing,
                      std::uint16_t* targets) {
  constexpr double kEnd = kLargestCategoryCode + 1;
  const auto valueAt = [values](std::size_t i) { return values[i]; };
  if (!(missing >= 0.0 && missing < kEnd) && AreFromZeroTo(kEnd, count, valueAt)) {
    for (std::size_t i = 0; i < count; ++i)
      targets[i] = static_cast<std::uint16_t>(static_cast<int>(values[i]));
  } else {
    for (std::size_t i = 0; i < count; ++i) targets[i] = ToTarget(values[i], missing);
  }
}

// Where cases are stored, by position.
template <typename Case>
class CasePlaces {
 public:
  static constexpr bool kHasWeight =
      std::is_same_v<Case, BINDataTuple> || std::is_same_v<Case, EFBINDataTuple>;
  // Values are stored on their own, one behind the other.
  static constexpr bool kHasBareValues = std::is_same_v<Case, UnweightedEFCase>;
  static_assert(sizeof(UnweightedEFCase) == sizeof(double));

  explicit CasePlaces(std::vector<Case>& cases) : fCases(cases.data()) {}

  double* ValueAt(std::size_t position) const { return &fCases[position].value; }

  void Put(std::size_t position, double value, std::uint8_t target, double weight) const {
    fCases[position] = Make(value, target, weight);
  }

  // Those behind the position will be put soon.
  void Fetch(std::size_t position) const { FetchAhead<true>(fCases + position, kFarAhead); }

 private:
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

  Case* fCases;
};

// Those that are to be packed are loose at first.
template <int kTargetBits>
class CasePlaces<PackedCase<kTargetBits>> {
 public:
  static constexpr bool kHasWeight = false;
  static constexpr bool kHasBareValues = true;

  explicit CasePlaces(LooseCases& cases)
      : fValues(cases.values.data()), fTargets(cases.targets.data()) {}

  double* ValueAt(std::size_t position) const { return fValues + position; }
  std::uint8_t* TargetAt(std::size_t position) const { return fTargets + position; }

  void Put(std::size_t position, double value, std::uint8_t target, double /*weight*/) const {
    fValues[position] = value;
    fTargets[position] = target;
  }

  void Fetch(std::size_t position) const { FetchAhead<true>(fTargets + position, kFarAhead); }

 private:
  double* fValues;
  std::uint8_t* fTargets;
};

// Collects the valid cases of files that are read in step, and their weights. `Case` is a
// kind of tuple, or what stands for it without weights.
template <typename Case>
class CaseCollector {
 public:
  // Requires room for every case to come.
  explicit CaseCollector(const CasePlaces<Case>& places)
      : fPlaces(places), fMissing(MCMV::Missing()) {}

  // Where the values of the next cases of the file are to be put before they are added.
  double* GetRoom(std::size_t count) {
    if constexpr (CasePlaces<Case>::kHasBareValues) {
      return fPlaces.ValueAt(fCount);  // where most of them stay
    } else {
      if (fRoom.size() < count) fRoom.resize(count);
      return fRoom.data();
    }
  }

  // The next cases of the files, whose values are in the room; null for a file that there is not,
  // as there are no weights with bare values. Without weights every case weighs 1.
  void Add(const std::uint16_t* targets, const double* weights, std::size_t count) {
    const double* const values = GetRoom(count);
    if constexpr (CasePlaces<Case>::kHasBareValues) {
      if (AddIfAllValid(targets, values, count)) return;
      AddMissing(targets, nullptr, values, count);  // before cases move closer together
      Collect<false>(targets, weights, values, count);
    } else {
      const std::size_t countBefore = fCount;
      if (weights != nullptr) {
        Collect<true>(targets, weights, values, count);
      } else {
        Collect<false>(targets, weights, values, count);
      }
      if (fCount - countBefore < count) AddMissing(targets, weights, values, count);
    }
  }

  std::size_t GetCount() const { return fCount; }

  // Whether all cases so far are of a kind that can be packed, if they are to be.
  bool HoldsAll() const { return fHoldsAll; }

  double GetTotalWeight() const { return fTotalWeight; }
  double GetTotalWeightWithMissing() const { return fTotalWeightWithMissing; }
  unsigned int GetLargestTarget() const { return static_cast<unsigned int>(fLargestTarget); }

  // The weights of the cases that lack the value alone, by target; one without target. As many as
  // the largest target among these and the valid cases asks for.
  std::vector<double> GetMissingWeights() const {
    std::size_t count = kCategoryCodes;
    const auto least = static_cast<std::size_t>(fLargestTarget) + 1;
    while (count > least && fMissingWeights[count - 1] == 0.0) --count;
    return {fMissingWeights.begin(), fMissingWeights.begin() + static_cast<std::ptrdiff_t>(count)};
  }

 private:
  static constexpr std::size_t kCategoryCodes = kLargestCategoryCode + 1;

  // Adds bare values, which are in their places, and their targets if all of them are valid and can
  // be held. Loops of vector instructions, where there are any.
  bool AddIfAllValid(const std::uint16_t* targets, const double* values, std::size_t count) {
    if constexpr (kIsPacked<Case>) {
      std::uint16_t largestTarget = 0;
      for (std::size_t i = 0; i < count; ++i) largestTarget = std::max(largestTarget, targets[i]);
      if (largestTarget >= Case::kTargetCount || !AreAllValid(values, count)) return false;
      std::uint8_t* const places = fPlaces.TargetAt(fCount);
      for (std::size_t i = 0; i < count; ++i) places[i] = static_cast<std::uint8_t>(targets[i]);
      fLargestTarget = std::max(fLargestTarget, int{largestTarget});
    } else {
      if (!AreAllValid(values, count)) return false;
    }
    fCount += count;
    fTotalWeight = static_cast<double>(fCount);
    fTotalWeightWithMissing += static_cast<double>(count);
    return true;
  }

  // False also where the missing value is one that can be held, or a zero, of which there are two:
  // the cases are then looked at one by one.
  bool AreAllValid(const double* values, std::size_t count) const {
    if constexpr (kIsPacked<Case>) {
      return !Case::CanHold(fMissing, 0) && Case::CanHoldAll(values, count);
    } else {
      std::uint64_t areAllOther = 1;
      for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t difference =
            std::bit_cast<std::uint64_t>(values[i]) ^ std::bit_cast<std::uint64_t>(fMissing);
        areAllOther &= (difference | (0 - difference)) >> 63;
      }
      return fMissing != 0.0 && areAllOther != 0;
    }
  }

  // Looks at a block again that is in the cache still, and only if a case of it is not valid: the
  // loop below stays as fast as it is. What does not count goes to an entry of its own.
  void AddMissing(const std::uint16_t* targets, const double* weights, const double* values,
                  std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      const double weight = weights != nullptr ? weights[i] : 1.0;
      const std::size_t target = kHasTarget<Case> ? targets[i] : 0;
      const bool isMissing = (values[i] == fMissing) & (weight != fMissing);
      fMissingWeights[isMissing ? std::min(target, kCategoryCodes) : kCategoryCodes] += weight;
    }
  }

  // Writes every case to the next free entry, which stays free when the case is not valid.
  // A function of its own without branches, so that the sums stay in registers: that saves a
  // quarter of the time to load an attribute.
  template <bool kIsWeighted>
  [[gnu::noinline]] void Collect(const std::uint16_t* targets, const double* weights,
                                 const double* values, std::size_t count) {
    const double missing = fMissing;
    const CasePlaces<Case> places = fPlaces;
    std::size_t caseCount = fCount;
    double totalWeight = fTotalWeight;
    double totalWeightWithMissing = fTotalWeightWithMissing;
    int largestTarget = fLargestTarget;
    bool holdsAll = fHoldsAll;
    for (std::size_t i = 0; i < count; ++i) {
      places.Fetch(caseCount);
      const double value = values[i];
      const double weight = kIsWeighted ? weights[i] : 1.0;
      const bool isCounted = !kIsWeighted || weight != missing;
      bool isValid = isCounted & (value != missing);
      int target = 0;
      if constexpr (kHasTarget<Case>) {
        isValid = isValid & (targets[i] != kNoTarget);
        target = targets[i];
        largestTarget = std::max(largestTarget, isValid ? target : 0);
      }
      if constexpr (kIsPacked<Case>) {
        holdsAll = holdsAll & (!isValid | Case::CanHold(value, static_cast<unsigned int>(target)));
      }
      places.Put(caseCount, value, static_cast<std::uint8_t>(target), weight);
      caseCount += isValid ? 1 : 0;
      if constexpr (kIsWeighted) {
        totalWeightWithMissing += ValueIf(isCounted, weight);
        totalWeight += ValueIf(isValid, weight);
      }
    }
    fCount = caseCount;
    fLargestTarget = largestTarget;
    fHoldsAll = holdsAll;
    if constexpr (kIsWeighted) {
      fTotalWeight = totalWeight;
      fTotalWeightWithMissing = totalWeightWithMissing;
    } else {  // the sum of ones, without adding them up
      fTotalWeight = static_cast<double>(fCount);
      fTotalWeightWithMissing += static_cast<double>(count);
    }
  }

  // `value` or 0.0, without a branch.
  static double ValueIf(bool condition, double value) {
    const std::uint64_t mask = ~(std::uint64_t{condition} - 1);
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) & mask);
  }

  const CasePlaces<Case> fPlaces;
  const double fMissing;
  std::vector<double> fRoom;  // of values that are not bare
  std::size_t fCount = 0;
  double fTotalWeight = 0.0;
  double fTotalWeightWithMissing = 0.0;
  int fLargestTarget = 0;
  bool fHoldsAll = true;
  std::array<double, kCategoryCodes + 1> fMissingWeights{};  // the last is of no account
};

}  // namespace MCBinning
