#include <gtest/gtest.h>

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

}  // namespace
