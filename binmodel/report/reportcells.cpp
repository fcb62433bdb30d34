#include "binmodel/report/reportcells.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/bestsplit.h"
#include "binmodel/model/severity.h"
#include "binmodel/report/numbertext.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "metadata/describe.h"

namespace MCBinModel {

std::string ResultTitle(const BinModel& model, const AttributeBins& bins) {
  const VariableInfo* const target = model.GetTarget(bins);
  std::string title = ElideText(model.GetAttribute(bins).name, kNameWidth);
  return target == nullptr ? title : title + " by " + ElideText(target->name, kNameWidth);
}

std::string MeasureCell(const std::optional<double>& measure) {
  if (!measure) return "-";
  if (std::isinf(*measure)) return *measure > 0.0 ? "+inf" : "-inf";
  return FormatFixed(*measure, 4);
}

std::string StatusCell(const AttributeBins& bins) {
  const MCBinning::MCStatus& status = bins.status;
  if (status.IsOK()) return "ok";
  if (IsPlainNoCut(status)) {
    return bins.bestSplit ? fmt::format("no cut: {}", DescribeBestSplit(*bins.bestSplit))
                          : "no cut";
  }
  return fmt::format("{}: {} ({})", DescribeSeverity(status), MCBinning::Describe(status),
                     status.GetErrorCode());
}

std::vector<std::size_t> OrderByGain(const std::vector<AttributeBins>& results) {
  std::vector<std::size_t> order(results.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return results[a].informationGain > results[b].informationGain;
  });
  return order;
}

double CountedWeight(const AttributeBins& bins) {
  return bins.validWeight + (bins.missing ? bins.missing->weight : 0.0);
}

bool HasTwoClasses(const BinModel& model, const AttributeBins& bins) {
  const VariableInfo* const target = model.GetTarget(bins);
  return target != nullptr && target->GetCategoryCount() == 2;
}

const MissingBin* FindMissingBin(const AttributeBins& bins) {
  return bins.missing && bins.missing->weight > 0.0 ? &*bins.missing : nullptr;
}

std::vector<double> SumCountedClassWeights(const AttributeBins& bins) {
  std::vector<double> sums = SumClassWeights(bins);
  if (!bins.missing) return sums;
  const std::vector<double>& missing = bins.missing->classWeights;
  sums.resize(missing.size());
  for (std::size_t code = 0; code < missing.size(); ++code) sums[code] += missing[code];
  return sums;
}

namespace {

// Whether there are cases beside the counted ones: those without target.
bool LacksTarget(const AttributeBins& bins) {
  constexpr double kRoundingError = 1e-9;
  const double rest = bins.weightWithMissing - CountedWeight(bins);
  return bins.missing && rest > kRoundingError * bins.weightWithMissing;
}

}  // namespace

std::string WeightFact(const AttributeBins& bins) {
  const double rest = bins.weightWithMissing - CountedWeight(bins);
  if (!bins.missing) {
    const char* const counted = rest > 0.0 ? ", not counted by class" : "";
    return fmt::format("weight {} valid, {} missing{}", FormatNumber(bins.validWeight),
                       FormatNumber(rest), bins.target ? counted : "");
  }
  std::string fact = fmt::format("weight {} valid, {} missing", FormatNumber(bins.validWeight),
                                 FormatNumber(bins.missing->weight));
  if (LacksTarget(bins)) fact += fmt::format(", {} without target", FormatNumber(rest));
  return fact;
}

bool KnowsDistinctValues(const AttributeBins& bins) {
  return bins.distinctValues > 0 || !bins.minimum;
}

namespace {

// Their codes say nothing.
std::string CategoriesFact(const VariableInfo& attribute, const AttributeBins& bins) {
  if (!KnowsDistinctValues(bins)) return {};
  const double code = *bins.minimum;
  const bool isOne = bins.distinctValues == 1 && code >= 0.0 &&
                     code < static_cast<double>(attribute.GetCategoryCount());
  if (!isOne) return fmt::format("{} categories", bins.distinctValues);
  return "the only category is " +
         ElideText(attribute.GetLabel(static_cast<std::size_t>(code)), kLabelWidth);
}

}  // namespace

std::string ValuesFact(const BinModel& model, const AttributeBins& bins) {
  if (!bins.minimum || !bins.maximum) return {};
  const VariableInfo& attribute = model.GetAttribute(bins);
  if (attribute.IsCategorical()) {
    return KnowsDistinctValues(bins) ? CategoriesFact(attribute, bins) : std::string();
  }
  const NumberText numbers(attribute, bins);
  if (bins.distinctValues == 1) return "the only value is " + numbers.OfValue(*bins.minimum);
  const std::string range =
      fmt::format("from {} to {}", numbers.OfValue(*bins.minimum), numbers.OfValue(*bins.maximum));
  // Equal-frequency bins know the values of all cases, but the range of those with the target.
  if (!KnowsDistinctValues(bins)) return range;
  const bool ofAll = model.settings.algorithm == Algorithm::kEqualFrequency && LacksTarget(bins);
  return fmt::format("{} distinct values{} {}", bins.distinctValues,
                     ofAll ? " in all cases, with the target" : "", range);
}

std::string InformationValueFact(const AttributeBins& bins, const Evidence& evidence,
                                 std::string (*cell)(const std::optional<double>& measure)) {
  std::string fact = "information value " + cell(evidence.informationValue);
  if (FindMissingBin(bins) == nullptr) return fact;
  return fact + fmt::format(" ({} without missing)", cell(evidence.valueWithoutMissing));
}

std::string EventFact(const BinModel& model, const VariableInfo& target) {
  if (target.GetCategoryCount() != 2) return {};
  std::string fact = "event " + ElideText(target.GetLabel(EventCategory(target)), kLabelWidth);
  const double adjustment = model.settings.evidenceAdjustment;
  if (adjustment > 0.0) {
    fact += fmt::format(", {} added to both classes of each bin", FormatNumber(adjustment));
  }
  return fact;
}

std::string BestSplitText(const BinModel& model, const AttributeBins& bins) {
  if (!bins.bestSplit || !IsPlainNoCut(bins.status)) return "";
  constexpr int kDecimals = 4;
  const VariableInfo& attribute = model.GetAttribute(bins);
  const std::string place =
      attribute.IsCategorical()
          ? std::string()
          : " at " + NumberText(attribute, bins).OfValue(bins.bestSplit->cutPoint);
  return fmt::format("; best split{}: gain {} bits, more than {} needed", place,
                     FormatFixed(bins.bestSplit->gain, kDecimals),
                     FormatFixed(bins.bestSplit->threshold, kDecimals));
}

}  // namespace MCBinModel
