#include "binmodel/measure/evidence.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <vector>

#include "binmodel/apply/binvalues.h"
#include "binmodel/measure/binstatistics.h"
#include "binmodel/samplebins.h"

namespace {

using MCBinModel::AttributeBins;
using MCBinModel::BinForm;
using MCBinModel::BinModel;
using MCBinModel::BinValue;

using Weights = std::vector<std::vector<double>>;

// A table as it is measured: with the weight added where there is any.
AttributeBins BinsOf(Weights weights, double adjustment) {
  for (std::vector<double>& bin : weights) {
    if (bin[0] + bin[1] == 0.0) continue;
    for (double& weight : bin) weight += adjustment;
  }
  return SampleBins({"n", "y"}, {{"x", weights}}).results[0];
}

// Whatever is measured with missing cases is what a table has that holds them as its last bin.
TEST(Evidence, CountsMissingCasesAsABin) {
  std::mt19937 random(20240611u);
  for (int round = 0; round < 500 && !HasFailure(); ++round) {
    Weights weights(1 + random() % 4);
    std::vector<double> missing(2);
    for (std::vector<double>& bin : weights) bin = {double(random() % 4), double(random() % 4)};
    for (double& weight : missing) weight = double(random() % 3);
    BinModel model = SampleBins({"n", "y"}, {{"x", weights}});
    model.results[0].missing = {missing[0] + missing[1], missing};
    model.settings.evidenceAdjustment = random() % 2 == 0 ? 0.0 : 0.5;
    model.targets[0].event = random() % 2;

    const MCBinModel::Evidence evidence = MeasureEvidence(model, model.results[0]);
    const double adjustment = model.settings.evidenceAdjustment;
    const std::size_t event = *model.targets[0].event;
    EXPECT_EQ(evidence.valueWithoutMissing, InformationValue(BinsOf(weights, adjustment), event));
    const bool hasMissing = missing[0] + missing[1] > 0.0;
    if (hasMissing) weights.push_back(missing);
    const AttributeBins table = BinsOf(weights, adjustment);
    std::vector<std::optional<double>> all = evidence.weights;
    std::vector<std::optional<double>> values = evidence.values;
    if (hasMissing) {
      all.push_back(evidence.missingWeight);
      values.push_back(evidence.missingValue);
    }
    EXPECT_EQ(all, WeightsOfEvidence(table, event));
    EXPECT_EQ(values, InformationValueTerms(table, event));
    EXPECT_EQ(evidence.informationValue, InformationValue(table, event));

    double infinite = 0.0;
    for (std::size_t bin = 0; bin < weights.size(); ++bin) {
      if (all[bin] && std::isinf(*all[bin])) infinite += weights[bin][0] + weights[bin][1];
    }
    EXPECT_EQ(GetInfiniteWeight(model.results[0], evidence), infinite);
  }
}

TEST(Evidence, MissingValuesBecomeWhatTheModelKnowsOfThem) {
  BinModel model = SampleBins({"n", "y"}, {{"x", {{3, 1}, {1, 3}}}});
  const auto value = [&](BinForm form) { return MakeMissingValue(model, model.results[0], form); };
  EXPECT_EQ(value(BinForm::kLabel), BinValue()) << "not counted";
  EXPECT_EQ(value(BinForm::kWeightOfEvidence), BinValue());
  model.results[0].missing = {0.0, {0.0, 0.0}};
  EXPECT_EQ(value(BinForm::kLabel), BinValue("missing"));
  EXPECT_EQ(value(BinForm::kWeightOfEvidence), BinValue()) << "a bin without weight has none";
  model.results[0].missing = {4.0, {2.0, 2.0}};
  EXPECT_EQ(value(BinForm::kWeightOfEvidence), BinValue(0.0));
  EXPECT_EQ(value(BinForm::kIndex), BinValue());
}

// Nothing moved but the share of missing values, 5.8 to 59.7 percent.
TEST(Stability, SeesThatMoreIsMissing) {
  AttributeBins bins = SampleBins({}, {{"x", {{471}, {471}}}}).results[0];
  AttributeBins others = SampleBins({}, {{"x", {{201.5}, {201.5}}}}).results[0];
  EXPECT_EQ(StabilityOfBins(bins, others), 0.0);
  bins.missing = {58.0, {}};
  EXPECT_EQ(StabilityOfBins(bins, others), 0.0) << "the other one has not counted them";
  others.missing = {597.0, {}};
  EXPECT_NEAR(*StabilityOfBins(bins, others), 1.7143, 5e-5);
  others.binWeights.clear();
  EXPECT_EQ(StabilityOfBins(bins, others), std::numeric_limits<double>::infinity())
      << "everything is missing now";
  others.missing = {};
  EXPECT_EQ(StabilityOfBins(bins, others), std::nullopt) << "nothing was counted";
  others.binWeights = {1.0};
  EXPECT_EQ(StabilityOfBins(bins, others), std::nullopt) << "these are other bins";
}

}  // namespace
