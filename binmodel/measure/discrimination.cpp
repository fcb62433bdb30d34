#include "binmodel/measure/discrimination.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace MCBinModel {

namespace {

struct RankedBin {
  double rate = 0.0;  // what it stands in order of
  double events = 0.0;
  double others = 0.0;
};

using ClassWeights = std::vector<std::vector<double>>;

// By class; the missing cases are the last one.
ClassWeights ListBins(const AttributeBins& bins, bool withMissing) {
  ClassWeights weights = bins.classWeights;
  if (withMissing) weights.push_back(bins.missing->classWeights);
  return weights;
}

std::vector<RankedBin> RankBins(const ClassWeights& ranking, const ClassWeights& counted,
                                std::size_t event) {
  double events = 0.0;
  double total = 0.0;
  for (const std::vector<double>& bin : ranking) {
    events += bin[event];
    total += bin[0] + bin[1];
  }
  const double overall = total > 0.0 ? events / total : 0.0;
  std::vector<RankedBin> ranked;
  for (std::size_t i = 0; i < ranking.size(); ++i) {
    const double weight = ranking[i][0] + ranking[i][1];
    const double rate = weight > 0.0 ? ranking[i][event] / weight : overall;
    ranked.push_back({rate, counted[i][event], counted[i][1 - event]});
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const RankedBin& a, const RankedBin& b) { return a.rate < b.rate; });
  return ranked;
}

}  // namespace

std::optional<Discrimination> MeasureDiscrimination(const AttributeBins& bins, std::size_t event) {
  return MeasureDiscrimination(bins, bins, event);
}

std::optional<Discrimination> MeasureDiscrimination(const AttributeBins& ranking,
                                                    const AttributeBins& counted,
                                                    std::size_t event) {
  if (ranking.classWeights.size() != counted.classWeights.size()) return std::nullopt;
  const bool withMissing = ranking.missing && counted.missing;
  const std::vector<RankedBin> ranked =
      RankBins(ListBins(ranking, withMissing), ListBins(counted, withMissing), event);
  RankedBin total;
  for (const RankedBin& bin : ranked) {
    total.events += bin.events;
    total.others += bin.others;
  }
  if (!(total.events > 0.0 && total.others > 0.0)) return std::nullopt;

  // Pairs of an event and another case: won when the event stands in a later bin, half won in bins
  // of one rate.
  double pairsWon = 0.0;
  double largest = 0.0;
  RankedBin below;
  for (std::size_t first = 0; first < ranked.size();) {
    RankedBin tied;
    std::size_t last = first;
    for (; last < ranked.size() && ranked[last].rate == ranked[first].rate; ++last) {
      tied.events += ranked[last].events;
      tied.others += ranked[last].others;
    }
    pairsWon += tied.events * (below.others + tied.others / 2.0);
    below.events += tied.events;
    below.others += tied.others;
    largest =
        std::max(largest, std::abs(below.others / total.others - below.events / total.events));
    first = last;
  }
  return Discrimination{pairsWon / total.events / total.others, largest};
}

}  // namespace MCBinModel
