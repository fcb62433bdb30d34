#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "binmodel/refine/refinesettings.h"

namespace MCBinModel {

// What each bin must be once bins are joined.
struct JoinLimits {
  std::size_t minBins = 1;
  std::size_t maxBins = std::numeric_limits<std::size_t>::max();
  double minShare = 0.0;
  double minWeight = 0.0;
  double minEventWeight = 0.0;
  double minNoneventWeight = 0.0;
  RateTrend trend = RateTrend::kAny;
  double minRateDifference = 0.0;
  bool bothClasses = false;                     // in every bin
  std::optional<std::vector<double>> onlyCuts;  // ascending; these stay and no others
  std::vector<double> keptCuts;                 // ascending; these stay

  bool NeedRates() const { return trend != RateTrend::kAny || minRateDifference > 0.0; }
};

// What a joined bin is worth, and of which class the shares are compared.
struct JoinMeasure {
  RefineObjective objective = RefineObjective::kInformationGain;
  std::size_t event = 0;  // category code, when the target has two
};

// Every bin that neighbours of some bins can be joined to: the interval (first, end) is made of the
// bins first .. end - 1.
class IntervalTable {
 public:
  // The value of an interval that the limits do not allow as a bin.
  static constexpr std::int64_t kNotAllowed = std::numeric_limits<std::int64_t>::min();

  // Measures all of them. O(bins^2 * classes). Requires at least one bin.
  IntervalTable(const AttributeBins& bins, const JoinMeasure& measure, const JoinLimits& limits);

  std::size_t GetBinCount() const { return fBinCount; }
  std::size_t GetIntervalCount() const { return fValues.size(); }

  // Where an interval is; those with the same end lie side by side. Requires first < end.
  static std::size_t Index(std::size_t first, std::size_t end) {
    return end * (end - 1) / 2 + first;
  }

  // What a bin adds to the sum that is to be as large as possible, as docs/method.md counts it:
  // of equal sums the one of fewer bins is larger.
  std::int64_t GetValue(std::size_t index) const { return fValues[index]; }

  // The share of the event. Requires an interval that is allowed, and limits that need rates.
  double GetRate(std::size_t index) const { return fRates[index]; }

 private:
  std::size_t fBinCount;
  std::vector<std::int64_t> fValues;
  std::vector<double> fRates;
};

}  // namespace MCBinModel
