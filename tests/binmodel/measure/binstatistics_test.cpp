#include "binmodel/measure/binstatistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "binmodel/model/binlookup.h"
#include "binmodel/model/refusal.h"

namespace {

using MCBinModel::AttributeBins;
using MCBinModel::VariableInfo;
using MCBinModel::VariableKind;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::size_t kEvent = 1;

// Bins of two classes, as {non-events, events}.
AttributeBins BinsOf(const std::vector<std::vector<double>>& classWeights) {
  AttributeBins bins{};
  bins.classWeights = classWeights;
  for (const auto& bin : classWeights) bins.binWeights.push_back(bin[0] + bin[1]);
  return bins;
}

void ExpectNear(const std::optional<double>& actual, const std::optional<double>& expected) {
  ASSERT_EQ(actual.has_value(), expected.has_value());
  if (!expected || *actual == *expected) return;
  EXPECT_NEAR(*actual, *expected, 1e-12);
}

const double kLn3 = std::log(3.0);

TEST(BinStatistics, WeightsOfEvidenceFollowTheFormula) {
  struct Example {
    std::vector<std::vector<double>> classWeights;
    std::vector<std::optional<double>> evidence;
    std::optional<double> informationValue;
  };
  const Example examples[] = {// Shares of the events 1/4 and 3/4, of the others 3/4 and 1/4.
                              {{{30, 1}, {10, 3}}, {-kLn3, kLn3}, kLn3},
                              {{{2, 1}, {4, 2}}, {0.0, 0.0}, 0.0},
                              {{{5, 0}, {0, 2}, {5, 2}}, {-kInfinity, kInfinity, 0.0}, kInfinity},
                              {{{30, 1}, {0, 0}, {10, 3}}, {-kLn3, std::nullopt, kLn3}, kLn3},
                              {{{3, 0}, {2, 0}}, {std::nullopt, std::nullopt}, std::nullopt}};
  for (const auto& [classWeights, expected, informationValue] : examples) {
    SCOPED_TRACE(testing::PrintToString(classWeights));
    const AttributeBins bins = BinsOf(classWeights);
    const auto evidence = MCBinModel::WeightsOfEvidence(bins, kEvent);
    ASSERT_EQ(evidence.size(), expected.size());
    for (std::size_t bin = 0; bin < evidence.size(); ++bin)
      ExpectNear(evidence[bin], expected[bin]);
    ExpectNear(MCBinModel::InformationValue(bins, kEvent), informationValue);
  }
}

TEST(BinStatistics, TheEventDoesNotDependOnTheOrderOfTheCategories) {
  const auto eventOf = [](std::vector<double> numbers, std::vector<std::string> texts) {
    const auto kind =
        texts.empty() ? VariableKind::kNumericCategorical : VariableKind::kStringCategorical;
    return MCBinModel::EventCategory({"y", kind, {}, std::move(numbers), std::move(texts)});
  };
  EXPECT_EQ(eventOf({}, {"no", "yes"}), 1u);
  EXPECT_EQ(eventOf({}, {"yes", "no"}), 0u);
  EXPECT_EQ(eventOf({10, 9}, {}), 0u);
  EXPECT_THROW(eventOf({1, 2, 3}, {}), MCBinModel::Refusal);
}

TEST(BinStatistics, StabilityIndexComparesShares) {
  EXPECT_EQ(MCBinModel::StabilityIndex({1, 2, 0}, {10, 20, 0}), 0.0);
  // Shares 0.25, 0.75 become 0.75, 0.25: 2 * 0.5 * ln 3.
  ExpectNear(MCBinModel::StabilityIndex({1, 3}, {30, 10}), kLn3);
  ExpectNear(MCBinModel::StabilityIndex({30, 10}, {1, 3}), kLn3);
  EXPECT_EQ(MCBinModel::StabilityIndex({1, 0}, {1, 1}), kInfinity);
  EXPECT_EQ(MCBinModel::StabilityIndex({0, 0}, {1, 1}), std::nullopt);
}

// Of four bins a quarter each would be ideal, however many bins there are in the end.
TEST(BinStatistics, ShareDeviationIsFromTheNumberOfBinsAskedFor) {
  AttributeBins bins;
  bins.binWeights = {30, 25, 45};
  bins.validWeight = 100;
  EXPECT_NEAR(MCBinModel::LargestShareDeviation(bins, 4), 0.20, 1e-12);
  bins.binWeights = {24, 25, 26, 25};
  EXPECT_NEAR(MCBinModel::LargestShareDeviation(bins, 4), 0.01, 1e-12);
}

TEST(BinLabel, TellsBinsApart) {
  const VariableInfo number{"a", VariableKind::kContinuous, {}, {}, {}};
  const std::vector<double> close = {0.1, std::nextafter(0.1, 1.0)};
  EXPECT_EQ(MCBinModel::BinLabel(number, close, 1, true), "(0.1, 0.10000000000000002]");
  EXPECT_EQ(MCBinModel::BinLabel(number, close, 2, false), "[0.10000000000000002, +inf)");

  const VariableInfo text{"c", VariableKind::kStringCategorical, {}, {}, {"a, b", "c", "", "d\""}};
  EXPECT_EQ(MCBinModel::BinLabel(text, {1.0}, 0, true), "{\"a, b\", c}");
  EXPECT_EQ(MCBinModel::BinLabel(text, {1.0}, 0, false), "{\"a, b\"}");
  EXPECT_EQ(MCBinModel::BinLabel(text, {1.0}, 1, true), "{\"\", \"d\"\"\"}");
}

}  // namespace
