#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "support/rowname.h"
#include "support/scenario.h"
#include "support/wholerun.h"

namespace {

// Every variable but the weight against every categorical one.
Outcome BinAllPairs(const Scenario& scenario) {
  std::vector<int> attributes;
  std::vector<int> targets;
  const int count = static_cast<int>(scenario.variables.size());
  for (int target = 0; target < count; ++target) {
    const ScenarioVariable& variable = scenario.variables[static_cast<std::size_t>(target)];
    if (variable.level != IBINVariable::MeasureNumericCategorical) continue;
    for (int v = 0; v < count; ++v) {
      if (v == target || v == scenario.WeightIndex()) continue;
      attributes.push_back(v);
      targets.push_back(target);
    }
  }
  return Bin(Driver::kSupervised, scenario, &attributes, &targets);
}

// The results when every attribute is asked for in one of three ways.
Outcome BinInSomeWay(const Scenario& scenario, std::uint64_t seed) {
  if (seed % 3 == 0) return Bin(Driver::kSupervised, scenario);
  if (seed % 3 == 1) return BinAllPairs(scenario);
  std::vector<int> attributes;
  for (int v = static_cast<int>(scenario.variables.size()) - 1; v >= 0; --v) {
    if (v != scenario.TargetIndex() && v != scenario.WeightIndex()) attributes.push_back(v);
  }
  return Bin(Driver::kSupervised, scenario, &attributes);
}

TEST(SupervisedProperty, RandomInputsAgreeWithTheReference) {
  for (std::uint64_t seed = TestSeed(); seed < TestSeed() + 2000; ++seed) {
    const Scenario scenario = RandomScenario(seed, 150, true);
    const Outcome run = BinInSomeWay(scenario, seed);
    ASSERT_EQ(DifferencesFromReference(run, scenario), "") << "MCBINNING_TEST_SEED=" << seed;
  }
}

// Every sequence of `cases` values out of three, as one attribute each, against every
// sequence of two classes, as one target each.
Scenario EverySequence(int cases) {
  Scenario scenario;
  const auto append = [&](int base, auto makeVariable) {
    int sequences = 1;
    for (int i = 0; i < cases; ++i) sequences *= base;
    for (int number = 0; number < sequences; ++number) {
      std::vector<double> digits;
      for (int i = 0, rest = number; i < cases; ++i, rest /= base) digits.push_back(rest % base);
      scenario.Append(makeVariable(digits));
    }
  };
  append(2, [](const std::vector<double>& codes) { return Categorical(codes, 2); });
  append(3, [](const std::vector<double>& values) { return Continuous(values); });
  scenario.variables.front().role = IBINVariable::RoleTarget;
  return scenario;
}

class EverySmallInput : public testing::TestWithParam<int> {};

TEST_P(EverySmallInput, AgreesWithTheReference) {
  Scenario scenario = EverySequence(GetParam());
  std::vector<double> weights;
  for (int i = 0; i < GetParam(); ++i) weights.push_back(1 << i);
  for (const bool weighted : {false, true}) {
    if (weighted) scenario.Append(Weights(weights));
    for (const bool closed : {false, true}) {
      for (const int threshold : {-1, 1}) {
        scenario.options = {closed, threshold, 3, 1.0};
        ASSERT_EQ(DifferencesFromReference(BinAllPairs(scenario), scenario), "")
            << (weighted ? "weighted" : "unweighted") << ", right border closed " << closed
            << ", pre-bins above " << threshold;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, EverySmallInput, testing::Values(1, 2, 3, 4, 5),
                         testing::PrintToStringParamName());

struct LargeInput {
  const char* name;
  int cases;
  int distinct;
  int categories;
  double weightUnit;  // 0.0 without weights
  int threshold;
};

void PrintTo(const LargeInput& input, std::ostream* os) { *os << input.name; }

class LargeInputTest : public testing::TestWithParam<LargeInput> {};

// Reaches what small inputs cannot: several cache fills, every sort and search strategy.
TEST_P(LargeInputTest, AgreesWithTheReference) {
  const LargeInput& input = GetParam();
  std::mt19937_64 random(TestSeed());
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  std::vector<double> values;
  std::vector<double> clusters;  // of values that differ in their last bits
  std::vector<double> anyBits;
  std::vector<double> rounded;  // to 0.0 and to -0.0
  std::vector<double> codes;
  std::vector<double> weights;
  for (int i = 0; i < input.cases; ++i) {
    const int level = below(input.distinct);
    const int segment = static_cast<int>(17.0 * level / input.distinct);
    values.push_back(level * 0.37 - 100.0);
    const double nearOne = 1.0 + level % 64 * std::numeric_limits<double>::epsilon();
    clusters.push_back(std::ldexp(nearOne, below(input.distinct) % 40 - 20));
    const double bits = std::bit_cast<double>(random());
    anyBits.push_back(std::isfinite(bits) ? bits : level % 2 == 0 ? -0.0 : 0.0);
    rounded.push_back(std::round(std::sqrt(level % 1000) - 15.0) / 4.0);
    codes.push_back(below(3) == 0 ? below(input.categories) : segment % input.categories);
    weights.push_back(below(50) * input.weightUnit);
  }
  std::vector<double> ascending = values;
  std::sort(ascending.begin(), ascending.end());
  for (const bool closed : {false, true}) {
    Scenario scenario;
    scenario.options = {closed, input.threshold, 1000, 0.5};
    scenario.Append(Categorical(codes, input.categories, IBINVariable::RoleTarget));
    scenario.Append(Continuous(values));
    scenario.Append(Continuous(clusters));
    scenario.Append(Continuous(anyBits));
    scenario.Append(Continuous(ascending));
    scenario.Append(Continuous(rounded));
    if (input.weightUnit > 0.0) scenario.Append(Weights(weights));
    EXPECT_EQ(DifferencesFromReference(BinAllPairs(scenario), scenario), "")
        << "MCBINNING_TEST_SEED=" << TestSeed() << ", right border closed " << closed;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, LargeInputTest,
    testing::Values(LargeInput{"FewDistinctValues", 12000, 16, 2, 0.0, -1},
                    LargeInput{"ManyDistinctValues", 12000, 1 << 30, 2, 0.0, -1},
                    LargeInput{"ManyDistinctValuesWeighted", 10001, 1 << 30, 3, 1.0, -1},
                    LargeInput{"WeightsTooHeavyForExactSums", 10001, 1 << 30, 3, 4e13 + 7.0, -1},
                    LargeInput{"Buckets", 33000, 1 << 30, 2, 0.0, -1},
                    LargeInput{"BucketsOfTies", 40000, 5000, 3, 0.0, -1},
                    LargeInput{"BucketsOfPreBins", 33000, 9000, 2, 0.0, 999},
                    LargeInput{"Ties", 20000, 5000, 5, 1.0, -1},
                    LargeInput{"TwelveCategories", 5000, 3000, 12, 0.0, -1},
                    LargeInput{"AllCategories", 2000, 1 << 30, 256, 1.0, -1},
                    LargeInput{"ManyCategoriesTooHeavy", 3000, 1500, 30, 4e13 + 7.0, -1},
                    LargeInput{"PreBins", 20000, 10000, 4, 1.0, 999}),
    RowName);

}  // namespace
