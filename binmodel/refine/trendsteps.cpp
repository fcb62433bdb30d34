#include "binmodel/refine/trendsteps.h"

#include <algorithm>

namespace MCBinModel {

namespace {

// The difference of two rates may miss a decimal number by their rounding: 0.15 - 0.1 is below
// 0.05.
constexpr double kRateRounding = 0x1p-50;

std::vector<TrendSteps::Phase> PhasesOf(RateTrend trend) {
  switch (trend) {
    case RateTrend::kAny:
      return {{0, 0}};
    case RateTrend::kPeak:
    case RateTrend::kValley:
      return {{0, 1}, {std::nullopt, 1}};
    default:
      return {{0, std::nullopt}};
  }
}

}  // namespace

TrendSteps::TrendSteps(const IntervalTable& table, RateTrend trend, double minRateDifference)
    : fPhases(PhasesOf(trend)),
      fLeastStep(minRateDifference > 0.0 ? minRateDifference - kRateRounding : 0.0),
      fEnds(table.GetBinCount()),
      fFirstRises(table.GetIntervalCount()),
      fFallCounts(table.GetIntervalCount()) {
  // What falls is taken for something that rises: its rates are turned around.
  const bool turned = trend == RateTrend::kDecreasing || trend == RateTrend::kValley;
  std::vector<double> rates(table.GetIntervalCount());
  for (std::size_t interval = 0; interval < rates.size(); ++interval) {
    rates[interval] = turned ? -table.GetRate(interval) : table.GetRate(interval);
  }
  for (std::size_t cut = 1; cut < table.GetBinCount(); ++cut) RankBinsFrom(table, cut, rates);
}

TrendSteps::Bins TrendSteps::GetBinsFrom(std::size_t cut) const {
  return {fEnds[cut].data(), fEnds[cut].size()};
}

void TrendSteps::RankBinsFrom(const IntervalTable& table, std::size_t cut,
                              const std::vector<double>& rates) {
  const auto isAllowed = [&](std::size_t interval) {
    return table.GetValue(interval) != IntervalTable::kNotAllowed;
  };
  std::vector<std::pair<double, std::uint16_t>> ranked;  // rates and ends
  for (std::size_t end = cut + 1; end <= table.GetBinCount(); ++end) {
    const std::size_t interval = table.Index(cut, end);
    if (isAllowed(interval)) ranked.emplace_back(rates[interval], static_cast<std::uint16_t>(end));
  }
  std::sort(ranked.begin(), ranked.end());
  for (const auto& [rate, end] : ranked) fEnds[cut].push_back(end);

  for (std::size_t first = 0; first < cut; ++first) {
    const std::size_t interval = table.Index(first, cut);
    if (!isAllowed(interval)) continue;
    const double rate = rates[interval];
    const auto rise = std::partition_point(ranked.begin(), ranked.end(), [&](const auto& next) {
      return next.first - rate < fLeastStep;
    });
    const auto fallEnd = std::partition_point(ranked.begin(), ranked.end(), [&](const auto& next) {
      return rate - next.first >= fLeastStep;
    });
    fFirstRises[interval] = static_cast<std::uint16_t>(rise - ranked.begin());
    fFallCounts[interval] = static_cast<std::uint16_t>(fallEnd - ranked.begin());
  }
}

}  // namespace MCBinModel
