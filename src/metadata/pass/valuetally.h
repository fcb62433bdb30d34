#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "metadata/pass/cases.h"
#include "metadata/pass/loosecases.h"
#include "metadata/pass/tuplesort.h"

namespace MCBinning {

// Counts how many cases there are of each value, where there are few different ones, as among whole
// numbers and rounded measurements. A hash table finds them in one pass, so that cases need no
// sort.
class ValueTally {
 public:
  // Makes cases that weigh 1 each to some that weigh as much together: one for each value and
  // target, ascending by value. -0.0 and 0.0 are two values here; the first and the last of them
  // come first and last, as in a stable sort. Requires that targets lie below `targetCount`.
  //
  // False, with `runs` of no account, when there are too few cases or too many values for that to
  // be faster, or a NaN. O(cases). Throws std::bad_alloc.
  bool Tally(const LooseCases& cases, std::size_t targetCount, std::vector<BINDataTuple>& runs);
  bool Tally(const std::vector<UnweightedEFCase>& cases, std::vector<EFBINDataTuple>& runs);

 private:
  using Bits = std::uint64_t;
  using Number = std::uint32_t;  // of a value, in the order of the first cases
  using NumberedValue = UnweightedCase;

  // A value's; the next ones take those of values that they share a place with.
  struct Place {
    Bits bits;
    Number number;
  };

  template <typename Tuple, typename Source, typename TargetAt>
  bool Tally(const Source* sources, std::size_t count, std::size_t targetCount,
             const TargetAt& targetAt, std::vector<Tuple>& runs);
  template <typename Source>
  bool IsPromising(const Source* sources, std::size_t count);
  void Begin(std::size_t mostValues);
  Number NumberOf(double value);
  Number Add(std::size_t place, double value);
  void SortValues();

  std::vector<Place> fPlaces;  // a power of 2 of them
  std::size_t fPlaceMask = 0;
  int fPlaceShift = 0;
  std::size_t fMostValues = 0;
  std::size_t fStepsLeft = 0;  // to places that others have
  std::vector<NumberedValue> fValues;
  std::vector<NumberedValue> fSorted;  // room to sort them in
  TupleSorter<NumberedValue> fSorter;
  std::vector<std::uint32_t> fCounts;  // [number * targetCount + target]
};

}  // namespace MCBinning
