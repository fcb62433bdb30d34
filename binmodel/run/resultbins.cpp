#include "binmodel/run/resultbins.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "common/missing.h"

namespace MCBinModel {

namespace {

std::optional<double> Known(double value) {
  return MCMV::IsMissing(value) ? std::nullopt : std::optional<double>(value);
}

void CheckWeight(double weight) {
  if (std::isfinite(weight)) return;
  throw Refusal(
      "the weights sum up to more than the largest double; divide them, for example by 1000");
}

// What the results of both algorithms have.
template <typename Results>
AttributeBins TakeCommon(const Results& results) {
  CheckWeight(results.GetTotalWeightWithMissing());
  AttributeBins bins{};
  bins.status = results.GetStatus();
  bins.cutPoints = results.GetCutPoints();
  bins.distinctValues = results.GetNDistinctValues();
  bins.validWeight = results.GetTotalWeight();
  bins.weightWithMissing = results.GetTotalWeightWithMissing();
  if (results.GetNDistinctValues() > 0) {
    bins.minimum = Known(results.GetMinimum());
    bins.maximum = Known(results.GetMaximum());
  }
  return bins;
}

// Nothing when no split was looked for, or none divides the values; a split that only rounding
// made worth something counts as worth nothing.
std::optional<BestSplit> TakeBestSplit(const BINAttributeTargetResults& results) {
  const double cutPoint = results.GetBestSplitCutPoint();
  const double threshold = results.GetBestSplitThreshold();
  if (!(cutPoint >= results.GetMinimum() && cutPoint <= results.GetMaximum())) return std::nullopt;
  if (!std::isfinite(threshold)) return std::nullopt;
  return BestSplit{cutPoint, std::max(0.0, results.GetBestSplitGain()), threshold};
}

}  // namespace

AttributeBins TakeResults(const BINAttributeTargetResults& results) {
  AttributeBins bins = TakeCommon(results);
  for (const std::vector<double>& cells : results.GetCellCounts()) {
    if (cells.empty()) continue;
    bins.binWeights.push_back(cells.front());
    bins.classWeights.emplace_back(cells.begin() + 1, cells.end());
  }
  if (!bins.binWeights.empty()) {
    bins.modelEntropy = Known(results.GetModelEntropy());
    if (bins.modelEntropy) bins.informationGain = InformationGain(bins);
    if (bins.cutPoints.empty()) bins.bestSplit = TakeBestSplit(results);
  }
  const std::vector<double>& missing = results.GetMissingCellCounts();
  if (!missing.empty()) bins.missing = {missing.front(), {missing.begin() + 1, missing.end()}};
  return bins;
}

AttributeBins TakeResults(const BINAttributeResults& results) {
  AttributeBins bins = TakeCommon(results);
  bins.missing = {results.GetMissingWeight(), {}};
  bins.binWeights = results.GetCellCounts();
  return bins;
}

void AddUnseenCategories(AttributeBins& bins, const VariableInfo& target) {
  const std::size_t count = target.GetCategoryCount();
  for (std::vector<double>& weights : bins.classWeights) {
    if (weights.size() < count) weights.resize(count, 0.0);
  }
  if (bins.missing && bins.missing->classWeights.size() < count) {
    bins.missing->classWeights.resize(count, 0.0);
  }
}

void CheckCutPoints(const std::vector<double>& cutPoints, const VariableInfo& attribute) {
  const bool finite = std::all_of(cutPoints.begin(), cutPoints.end(),
                                  [](double cutPoint) { return std::isfinite(cutPoint); });
  const bool ascend = std::adjacent_find(cutPoints.begin(), cutPoints.end(),
                                         std::greater_equal<>()) == cutPoints.end();
  if (finite && ascend) return;
  throw Refusal(
      RefusalCode::kInput, {{}, attribute.name, {}},
      fmt::format(
          "column {}: {}; divide the values, for example by 1000", QuotedText(attribute.name),
          finite ? "the cut points do not ascend" : "a cut point is beyond the largest double"));
}

}  // namespace MCBinModel
