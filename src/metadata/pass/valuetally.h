#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "metadata/pass/cases.h"
#include "metadata/pass/loosecases.h"
#include "metadata/pass/tuplesort.h"

namespace MCBinning {

// Counts how many cases there are of each value, where there are few different ones, as among whole
// numbers and rounded measurements. A table finds them in a pass or two, so that cases need no
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
  using CountedValue = UnweightedCase;  // its target: where its counts are

  static constexpr std::uint32_t kEmpty = ~std::uint32_t{0};
  static constexpr std::size_t kSampleSize = 256;
  using Sample = std::array<double, kSampleSize>;

  // A value's; the next ones take those of values that they share a place with.
  struct Place {
    Bits bits;
    std::uint32_t counts;  // where they begin; ascends in the order of the values' first cases
  };

  template <typename Tuple, typename Source, typename TargetAt>
  bool Tally(const Source* sources, std::size_t count, std::size_t targetCount,
             const TargetAt& targetAt, std::vector<Tuple>& runs);
  bool IsPromising(const Sample& sample, std::size_t mostValues);
  template <typename Source, typename TargetAt>
  bool CountAll(const Source* sources, std::size_t count, const TargetAt& targetAt,
                const Sample& sample, std::size_t mostValues);
  void Begin(std::size_t mostValues, std::size_t placeCount, std::size_t mostSteps);
  template <typename Source, typename TargetAt, typename PlaceOf>
  bool Count(const Source* sources, std::size_t count, const TargetAt& targetAt,
             const PlaceOf& placeOf);
  const Place* FindPlace(std::size_t at, double value);
  void SortValues();

  std::vector<Place> fPlaces;  // a power of 2 of them
  std::size_t fStepsLeft = 0;  // to places that others have
  std::size_t fTargetCount = 0;
  std::vector<std::uint32_t> fCounts;  // of a value, by target
  std::uint32_t fNextCounts = 0;       // of the next value
  std::vector<CountedValue> fValues;
  TupleSorter<CountedValue> fSorter;
};

}  // namespace MCBinning
