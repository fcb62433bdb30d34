#include <gtest/gtest.h>

#include "algorithm/binefpreprocess.h"
#include "metadata/bindatatuple.h"
#include "metadata/efbindatatuple.h"
#include "support/agreement.h"
#include "support/scenario.h"
#include "support/wholerun.h"

namespace {

// What differs from the reference when every variable but the weight is binned.
std::string DifferencesOf(const Scenario& scenario) {
  return DifferencesFromReference(Bin(Driver::kEqualFrequency, scenario), scenario);
}

TEST(EqualFrequencyProperty, RandomInputsAgreeWithTheReference) {
  for (std::uint64_t seed = TestSeed(); seed < TestSeed() + 1200; ++seed) {
    const Scenario scenario = RandomScenario(seed, 150, seed % 2 == 0);
    ASSERT_EQ(DifferencesOf(scenario), "") << "MCBINNING_TEST_SEED=" << seed;
  }
}

// Every sequence of five values out of three, as one attribute each: exact hits on percentiles,
// one distinct value, more bins than values, with and without weights.
TEST(EqualFrequencyProperty, EverySmallInputAgreesWithTheReference) {
  Scenario scenario;
  for (int number = 0; number < 243; ++number) {
    std::vector<double> digits;
    for (int i = 0, rest = number; i < 5; ++i, rest /= 3) digits.push_back(rest % 3);
    scenario.Append(Continuous(digits));
  }
  for (const bool weighted : {false, true}) {
    if (weighted) scenario.Append(Weights({1, 2, 0, 3, 5}));
    for (const bool closed : {false, true}) {
      for (const int bins : {2, 3, 5, 7}) {
        scenario.options.rightBorderClosed = closed;
        scenario.options.numberOfBins = bins;
        ASSERT_EQ(DifferencesOf(scenario), "")
            << bins << " bins, right border closed " << closed << ", weighted " << weighted;
      }
    }
  }
}

// Accumulated percentages only drift apart over many cases and many bins.
TEST(EqualFrequencyProperty, ManyCasesAgreeWithTheReference) {
  std::mt19937_64 random(TestSeed());
  for (const int bins : {7, 100, 997}) {
    Scenario scenario;
    scenario.options.numberOfBins = bins;
    scenario.options.rightBorderClosed = bins != 100;
    std::vector<double> ascending;
    std::vector<double> ties;
    std::vector<double> weights;
    for (int i = 0; i < 12000; ++i) {
      ascending.push_back(i);
      ties.push_back(static_cast<double>(random() % 3000) / 7.0);
      weights.push_back(static_cast<double>(random() % 4));
    }
    scenario.Append(Continuous(ascending));
    scenario.Append(Continuous(ties));
    EXPECT_EQ(DifferencesOf(scenario), "") << bins << " bins";
    scenario.Append(Weights(weights));
    EXPECT_EQ(DifferencesOf(scenario), "") << bins << " bins, weighted";
  }
}

// Asked directly, also for numbers of bins that no settings allow.
TEST(EqualFrequencyProperty, PreProcessAgreesWithTheReferenceForAnyNumberOfBins) {
  for (std::uint64_t seed = TestSeed(); seed < TestSeed() + 300; ++seed) {
    const Scenario scenario = RandomScenario(seed, 40, true);
    const reference::Cases cases = reference::ValidCases(
        scenario.Stored(0), scenario.Stored(scenario.TargetIndex()), scenario.StoredWeights());
    std::vector<BINDataTuple> tuples;
    std::vector<EFBINDataTuple> pairs;
    for (const reference::Case& c : cases.sorted) {
      tuples.push_back({c.value, static_cast<unsigned char>(c.target), c.weight});
      pairs.push_back({c.value, c.weight});
    }
    for (const int bins : {-1, 0, 1, 2, 3}) {
      for (const bool closed : {false, true}) {
        SCOPED_TRACE("MCBINNING_TEST_SEED=" + std::to_string(seed) + ", bins " +
                     std::to_string(bins) + ", right border closed " + std::to_string(closed));
        const auto expect = [&](auto& input, bool withWeights) {
          std::vector<double> expectedCutPoints;
          std::vector<double> expectedWeights;
          const bool found = reference::PercentileCutPoints(
              cases.sorted, bins, closed, cases.totalWeight, expectedCutPoints,
              withWeights ? &expectedWeights : nullptr);
          std::vector<double> cutPoints;
          std::vector<double> weights;
          BINEFPreProcess preProcess(bins, closed);
          EXPECT_EQ(
              preProcess.EFCreatePercentileCutPts(&input, cutPoints, weights, cases.totalWeight),
              found);
          EXPECT_EQ(Text(cutPoints), Text(expectedCutPoints));
          EXPECT_EQ(Text(weights), Text(expectedWeights));
        };
        expect(pairs, true);
        expect(tuples, false);
      }
    }
    if (HasFailure()) break;
  }
}

}  // namespace
