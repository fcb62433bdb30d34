#include "metadata/pass/valuetally.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "common/prefetch.h"
#include "metadata/pass/equalparts.h"

namespace MCBinning {

namespace {

// With fewer cases, of all or of a value on average, a sort is as fast; with more values the table
// does not stay near.
constexpr std::size_t kFewestCases = 1024;
constexpr std::size_t kFewestOfValue = 8;
constexpr std::size_t kMostValues = 4096;

// A power of 2. In order, values that are no closer to another than a part is wide need no more.
constexpr std::size_t kPlacesOfValue = 4;
constexpr std::size_t kPartsOfValue = 2;

// Where as many of a sample are different, there are more than some 2,000 values that are about as
// frequent; most of them would be found too late to be too many.
constexpr std::size_t kMostInSample = 240;

// Puts values anywhere among a power of 2 of places.
class Scatter {
 public:
  explicit Scatter(std::size_t placeCount)
      : fShift(64 - static_cast<int>(std::bit_width(placeCount - 1))) {}

  std::size_t operator()(double value) const {
    // Of 2^64. Once spreads neighbours evenly, but puts numbers at some distances close together.
    constexpr std::uint64_t kGoldenRatio = 0x9e3779b97f4a7c15;
    const std::uint64_t once = std::bit_cast<std::uint64_t>(value) * kGoldenRatio;
    return ((once ^ (once >> 32)) * kGoldenRatio) >> fShift;
  }

 private:
  int fShift;
};

void AddRun(std::vector<BINDataTuple>& runs, double value, std::size_t target, double weight) {
  runs.push_back({value, static_cast<std::uint8_t>(target), weight});
}
void AddRun(std::vector<EFBINDataTuple>& runs, double value, std::size_t /*target*/,
            double weight) {
  runs.push_back({value, weight});
}

}  // namespace

bool ValueTally::Tally(const LooseCases& cases, std::size_t targetCount,
                       std::vector<BINDataTuple>& runs) {
  const std::uint8_t* const targets = cases.targets.data();
  return Tally(
      cases.values.data(), cases.size(), targetCount,
      [targets](std::size_t i) -> std::size_t { return targets[i]; }, runs);
}

bool ValueTally::Tally(const std::vector<UnweightedEFCase>& cases,
                       std::vector<EFBINDataTuple>& runs) {
  return Tally(
      cases.data(), cases.size(), 1, [](std::size_t) { return std::size_t{0}; }, runs);
}

template <typename Tuple, typename Source, typename TargetAt>
bool ValueTally::Tally(const Source* sources, std::size_t count, std::size_t targetCount,
                       const TargetAt& targetAt, std::vector<Tuple>& runs) {
  if (count < kFewestCases) return false;
  const auto sample = SampleOf<kSampleSize>(sources, count);
  const std::size_t mostValues = std::min(std::bit_floor(count / kFewestOfValue), kMostValues);
  if (!IsPromising(sample, mostValues)) return false;

  fTargetCount = targetCount;
  if (!CountAll(sources, count, targetAt, sample, mostValues)) return false;
  SortValues();

  runs.clear();
  const auto addRuns = [&](const CountedValue& value) {
    for (std::size_t target = 0; target < targetCount; ++target) {
      const std::uint32_t weight = fCounts[value.target + target];
      if (weight > 0) AddRun(runs, value.value, target, weight);
    }
  };
  for (auto value = fValues.begin(); value != fValues.end(); ++value) {
    if (value + 1 == fValues.end() || !HaveSameValue(value[0], value[1])) {
      addRuns(*value);
      continue;
    }
    // Both zeros. If the last case has the same one as the first, that case becomes a run.
    if (value[1].target < value[0].target) std::swap(value[0], value[1]);
    std::size_t last = count - 1;
    while (ValueOf(sources[last]) != 0.0) --last;
    const bool isFirstLast =
        std::bit_cast<Bits>(ValueOf(sources[last])) == std::bit_cast<Bits>(value->value);
    const std::size_t lastTarget = targetAt(last);
    if (isFirstLast) --fCounts[value->target + lastTarget];
    addRuns(value[0]);
    addRuns(value[1]);
    if (isFirstLast) AddRun(runs, value->value, lastTarget, 1.0);
    ++value;
  }
  return true;
}

bool ValueTally::IsPromising(const Sample& sample, std::size_t mostValues) {
  fTargetCount = 1;
  Begin(std::min(mostValues, kMostInSample), kSampleSize * kPlacesOfValue, kSampleSize);
  const auto noTarget = [](std::size_t) { return std::size_t{0}; };
  return Count(sample.data(), sample.size(), noTarget, Scatter(fPlaces.size()));
}

// Values that lie evenly, as rounded ones do, have a part of their range each; others are scattered
// when that has turned out.
template <typename Source, typename TargetAt>
bool ValueTally::CountAll(const Source* sources, std::size_t count, const TargetAt& targetAt,
                          const Sample& sample, std::size_t mostValues) {
  const auto [low, high] = std::minmax_element(sample.begin(), sample.end());
  const double margin = (*high - *low) / 4.0;
  const EqualParts parts(*low - margin, *high + margin, mostValues * kPartsOfValue - 1);
  if (parts.IsUseful()) {
    Begin(mostValues, mostValues * kPartsOfValue, count / 8);
    // Those from 0.0 on move up by one, as -0.0 is where it would be.
    const auto placeOf = [&](double value) {
      const Bits isNegative = std::bit_cast<Bits>(value) >> 63;
      return static_cast<std::size_t>(parts.PartOf(value)) + 1 - isNegative;
    };
    if (Count(sources, count, targetAt, placeOf)) return true;
    // Too many values; or as many as may be, out of steps: a sort will do.
    if (fNextCounts == fCounts.size()) return false;
  }
  Begin(mostValues, mostValues * kPlacesOfValue, 2 * count);
  return Count(sources, count, targetAt, Scatter(fPlaces.size()));
}

void ValueTally::Begin(std::size_t mostValues, std::size_t placeCount, std::size_t mostSteps) {
  fPlaces.resize(placeCount);
  fStepsLeft = mostSteps;
  fCounts.assign(mostValues * fTargetCount, 0);
}

// False for a value too many, for a NaN, or when the table has taken too many steps.
template <typename Source, typename TargetAt, typename PlaceOf>
bool ValueTally::Count(const Source* sources, std::size_t count, const TargetAt& targetAt,
                       const PlaceOf& placeOf) {
  // An empty place seems to hold the first value, which never looks there as it has its own: so
  // one comparison tells a value that is in its place.
  const double firstValue = ValueOf(sources[0]);
  if (firstValue != firstValue) return false;
  std::fill(fPlaces.begin(), fPlaces.end(), Place{std::bit_cast<Bits>(firstValue), kEmpty});
  fPlaces[placeOf(firstValue)].counts = 0;
  fNextCounts = static_cast<std::uint32_t>(fTargetCount);

  Place* const places = fPlaces.data();
  std::uint32_t* const counts = fCounts.data();
  for (std::size_t i = 0; i < count; ++i) {
    FetchAhead(sources + i, kFarAhead);
    const double value = ValueOf(sources[i]);
    const auto bits = std::bit_cast<Bits>(value);
    const std::size_t at = placeOf(value);
    const Place* place = places + at;
    if (place->bits != bits) {
      place = FindPlace(at, value);
      if (place == nullptr) return false;
    }
    ++counts[place->counts + targetAt(i)];
  }
  return true;
}

// Of a value that is not in its place: where it is, or is from now on.
const ValueTally::Place* ValueTally::FindPlace(std::size_t at, double value) {
  const auto bits = std::bit_cast<Bits>(value);
  for (; fPlaces[at].counts != kEmpty; at = (at + 1) % fPlaces.size()) {
    if (fPlaces[at].bits == bits) return &fPlaces[at];
    if (fStepsLeft-- == 0) return nullptr;
  }
  if (fNextCounts == fCounts.size() || value != value) return nullptr;
  fPlaces[at] = {bits, fNextCounts};
  fNextCounts += static_cast<std::uint32_t>(fTargetCount);
  return &fPlaces[at];
}

void ValueTally::SortValues() {
  fValues.clear();
  for (const Place& place : fPlaces) {
    if (place.counts != kEmpty)
      fValues.push_back({std::bit_cast<double>(place.bits), place.counts});
  }
  fSorter.Sort(fValues);
}

}  // namespace MCBinning
