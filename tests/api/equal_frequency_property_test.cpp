#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

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

// Accumulated percentages only drift apart over many cases and many bins, and many cases without
// weights are not sorted as a whole: with crowds, ends of the range, and bins that end where values
// do, but for the last bit of a percentage.
TEST(EqualFrequencyProperty, ManyCasesAgreeWithTheReference) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  std::mt19937_64 random(TestSeed());
  std::normal_distribution<double> normal;
  for (const int bins : {2, 7, 98, 997}) {
    std::vector<double> ascending;
    std::vector<double> ties;
    std::vector<double> groups;
    std::vector<double> spread;
    std::vector<double> crowds;
    std::vector<double> rounded;  // to 0.0 and to -0.0
    std::vector<double> weights;
    for (int i = 0; i < 39200; ++i) {
      ascending.push_back(i);
      ties.push_back(static_cast<double>(random() % 3000) / 7.0 - 200.0);
      groups.push_back(i % 98 + static_cast<double>(random() % 1000) / 5000.0);
      spread.push_back(i % 1000 == 0 ? -kInfinity : i % 999 == 0 ? 0.0 : std::exp(normal(random)));
      crowds.push_back(static_cast<double>(random() % 7) +
                       (i % 3 == 0 ? 1e-13 * static_cast<double>(random() % 4000) : 0.0));
      rounded.push_back(std::round(normal(random) * 30.0) / 30.0);
      weights.push_back(static_cast<double>(random() % 4));
    }
    Scenario scenario;
    for (const auto& values : {ascending, ties, groups, spread, crowds, rounded}) {
      scenario.Append(Continuous(values));
    }
    for (const bool closed : {false, true}) {
      scenario.options.numberOfBins = bins;
      scenario.options.rightBorderClosed = closed;
      EXPECT_EQ(DifferencesOf(scenario), "") << bins << " bins, right border closed " << closed;
    }
    scenario.Append(Weights(weights));
    EXPECT_EQ(DifferencesOf(scenario), "") << bins << " bins, weighted";
  }
}

}  // namespace
