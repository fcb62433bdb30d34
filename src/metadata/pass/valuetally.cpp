#include "metadata/pass/valuetally.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numeric>

#include "common/prefetch.h"

namespace MCBinning {

namespace {

constexpr std::uint32_t kNone = ~std::uint32_t{0};

// With fewer cases, of all or of a value on average, a sort is as fast; with more values the table
// does not stay near.
constexpr std::size_t kFewestCases = 1024;
constexpr std::size_t kFewestOfValue = 8;
constexpr std::size_t kMostValues = 4096;

// Where as many of a sample are different, there are more than some 2,000 values that are about as
// frequent; most of them would be found too late to be too many.
constexpr std::size_t kSampleSize = 256;
constexpr std::size_t kMostInSample = 240;

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
  if (count < kFewestCases || !IsPromising(sources, count)) return false;
  fStepsLeft = 2 * count;
  Begin(std::min(std::bit_floor(count / kFewestOfValue), kMostValues));
  fCounts.assign(fMostValues * targetCount, 0);
  for (std::size_t i = 0; i < count; ++i) {
    FetchAhead(sources + i, kFarAhead);
    const Number number = NumberOf(ValueOf(sources[i]));
    if (number == kNone) return false;
    ++fCounts[number * targetCount + targetAt(i)];
  }

  runs.clear();
  const auto addRuns = [&](const NumberedValue& value) {
    for (std::size_t target = 0; target < targetCount; ++target) {
      const std::uint32_t weight = fCounts[value.target * targetCount + target];
      if (weight > 0) AddRun(runs, value.value, target, weight);
    }
  };
  SortValues();
  for (auto value = fValues.begin(); value != fValues.end(); ++value) {
    if (value + 1 == fValues.end() || !HaveSameValue(value[0], value[1])) {
      addRuns(*value);
      continue;
    }
    // Both zeros. If the last case has the same one as the first, that case becomes a run.
    std::size_t last = count - 1;
    while (ValueOf(sources[last]) != 0.0) --last;
    const bool isFirstLast =
        std::bit_cast<Bits>(ValueOf(sources[last])) == std::bit_cast<Bits>(value->value);
    const std::size_t lastTarget = targetAt(last);
    if (isFirstLast) --fCounts[value->target * targetCount + lastTarget];
    addRuns(value[0]);
    addRuns(value[1]);
    if (isFirstLast) AddRun(runs, value->value, lastTarget, 1.0);
    ++value;
  }
  return true;
}

template <typename Source>
bool ValueTally::IsPromising(const Source* sources, std::size_t count) {
  fStepsLeft = count;
  Begin(kSampleSize);
  for (std::size_t i = 0; i < kSampleSize; ++i) {
    if (NumberOf(ValueOf(sources[count / kSampleSize * i])) == kNone) return false;
  }
  return fValues.size() <= kMostInSample;
}

void ValueTally::Begin(std::size_t mostValues) {
  constexpr std::size_t kPlacesPerValue = 4;
  fMostValues = mostValues;
  fPlaces.assign(mostValues * kPlacesPerValue, Place{~Bits{0}, kNone});
  fPlaceMask = fPlaces.size() - 1;
  fPlaceShift = 64 - static_cast<int>(std::bit_width(fPlaceMask));
  fValues.clear();
}

// kNone for one too many, for a NaN, or when the table has taken too many steps.
inline ValueTally::Number ValueTally::NumberOf(double value) {
  // Of 2^64. Once spreads neighbours evenly, but puts numbers at some distances close together.
  constexpr Bits kGoldenRatio = 0x9e3779b97f4a7c15;
  const Bits bits = std::bit_cast<Bits>(value);
  const Bits once = bits * kGoldenRatio;
  std::size_t place = ((once ^ (once >> 32)) * kGoldenRatio) >> fPlaceShift;
  while (fPlaces[place].bits != bits) {
    if (fPlaces[place].number == kNone) return Add(place, value);
    if (fStepsLeft == 0) return kNone;
    --fStepsLeft;
    place = (place + 1) & fPlaceMask;
  }
  return fPlaces[place].number;
}

// As the sorter does, which takes twice as long for some hundred values: by equal parts of their
// range, then those of a part, unless they lie so unevenly that a part has many.
void ValueTally::SortValues() {
  constexpr std::size_t kParts = 2048;
  constexpr std::uint32_t kMostInPart = 16;
  const auto [least, most] = std::minmax_element(
      fValues.begin(), fValues.end(),
      [](const NumberedValue& a, const NumberedValue& b) { return a.value < b.value; });
  const double low = least->value;
  const double scale = (kParts - 1) / (most->value - low);
  // One value alone, an infinity or a range beyond all numbers have no parts.
  if (!std::isnormal(scale)) return fSorter.Sort(fValues);

  const auto partOf = [&](const NumberedValue& value) {
    return static_cast<std::size_t>((value.value - low) * scale);
  };
  std::array<std::uint32_t, kParts> positions{};
  for (const NumberedValue& value : fValues) ++positions[partOf(value)];
  if (*std::max_element(positions.begin(), positions.end()) > kMostInPart)
    return fSorter.Sort(fValues);
  std::exclusive_scan(positions.begin(), positions.end(), positions.begin(), std::uint32_t{0});
  fSorted.resize(fValues.size());
  for (const NumberedValue& value : fValues) fSorted[positions[partOf(value)]++] = value;
  for (auto end = fSorted.begin(); end != fSorted.end(); ++end) {
    const NumberedValue value = *end;
    auto place = end;
    for (; place != fSorted.begin() && value.value < place[-1].value; --place) *place = place[-1];
    *place = value;
  }
  fValues.swap(fSorted);
}

ValueTally::Number ValueTally::Add(std::size_t place, double value) {
  if (fValues.size() == fMostValues || value != value) return kNone;
  const auto number = static_cast<Number>(fValues.size());
  fPlaces[place] = {std::bit_cast<Bits>(value), number};
  fValues.push_back({value, number});
  return number;
}

}  // namespace MCBinning
