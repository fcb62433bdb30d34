// Counted values against sorted cases: as many of each value and target, in the same order.

#include "metadata/pass/valuetally.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <tuple>
#include <vector>

#include "metadata/pass/loosecases.h"
#include "support/rowname.h"
#include "support/scenario.h"

namespace {

using MCBinning::LooseCases;
using MCBinning::UnweightedEFCase;
using MCBinning::ValueTally;
using Random = std::mt19937_64;

std::uint64_t BitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }

// By value, the bits of the value (of both zeros together those that occur) and the target.
using Counts = std::map<std::tuple<double, std::uint64_t, int>, double>;

struct Values {
  const char* name;
  std::function<double(Random&)> draw;
};

const Values kFewValues[] = {
    {"WholeNumbers", [](Random& random) { return static_cast<double>(random() % 100); }},
    {"OneValue", [](Random&) { return 7.5; }},
    {"RoundedToBothZeros",
     [](Random& random) { return std::round(std::normal_distribution<double>()(random) * 9) / 9; }},
    {"NothingAboveZero", [](Random& random) { return -static_cast<double>(random() % 3); }},
    {"OnlyZeros", [](Random& random) { return random() % 2 == 0 ? 0.0 : -0.0; }},
    {"Infinities",
     [](Random& random) {
       const double values[] = {-HUGE_VAL, -1e308, -1.0, 1e-300, 3.0, HUGE_VAL};
       return values[random() % 6];
     }},
    {"SomeCloseTogether",
     [](Random& random) {
       return static_cast<double>(random() % 10) * 1000.0 +
              static_cast<double>(random() % 10) * 0.01;
     }},
    {"RareOnes",
     [](Random& random) {
       return random() % 50 == 0 ? std::ldexp(1.0, static_cast<int>(random() % 60)) : 0.1;
     }},
};

void PrintTo(const Values& values, std::ostream* os) { *os << values.name; }

class ValueTallyTest : public testing::TestWithParam<Values> {};

TEST_P(ValueTallyTest, CountsWhatASortPutsTogether) {
  Random random(TestSeed());
  ValueTally tally;
  std::vector<BINDataTuple> runs;
  std::vector<EFBINDataTuple> bareRuns;
  for (const std::size_t count : {1024U, 3001U, 40000U}) {
    for (const std::size_t targetCount : {1U, 2U, 30U}) {
      SCOPED_TRACE(testing::Message() << count << " cases, seed " << TestSeed());
      LooseCases cases;
      std::vector<UnweightedEFCase> bare;
      Counts counts, bareCounts;
      for (std::size_t i = 0; i < count; ++i) {
        const double value = GetParam().draw(random);
        cases.values.push_back(value);
        cases.targets.push_back(static_cast<std::uint8_t>(random() % targetCount));
        bare.push_back({value});
        ++counts[{value, BitsOf(value), cases.targets.back()}];
        ++bareCounts[{value, BitsOf(value), 0}];
      }
      ASSERT_TRUE(tally.Tally(cases, targetCount, runs));
      ASSERT_TRUE(tally.Tally(bare, bareRuns));

      const auto isLess = [](const auto& a, const auto& b) { return a.value < b.value; };
      EXPECT_TRUE(std::is_sorted(runs.begin(), runs.end(), isLess));
      EXPECT_TRUE(std::is_sorted(bareRuns.begin(), bareRuns.end(), isLess));
      Counts found, bareFound;
      for (const auto& run : runs) found[{run.value, BitsOf(run.value), run.target}] += run.weight;
      for (const auto& run : bareRuns) bareFound[{run.value, BitsOf(run.value), 0}] += run.weight;
      EXPECT_EQ(found, counts);
      EXPECT_EQ(bareFound, bareCounts);

      // What a sorted sequence shows of each value: its first and its last case.
      std::stable_sort(bare.begin(), bare.end(), isLess);
      for (std::size_t i = 0, run = 0, bareRun = 0; i < count && !HasFailure(); ++i) {
        const auto skip = [&](const auto& all, std::size_t& next, bool toLast) {
          while (next < all.size() && all[next].value < bare[i].value) ++next;
          while (toLast && next + 1 < all.size() && all[next + 1].value == bare[i].value) ++next;
          EXPECT_EQ(BitsOf(all[next].value), BitsOf(bare[i].value)) << i;
        };
        const bool isFirst = i == 0 || bare[i - 1].value < bare[i].value;
        const bool isLast = i + 1 == count || bare[i].value < bare[i + 1].value;
        if (isFirst) skip(runs, run, false);
        if (isFirst) skip(bareRuns, bareRun, false);
        if (isLast) skip(runs, run, true);
        if (isLast) skip(bareRuns, bareRun, true);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Inputs, ValueTallyTest, testing::ValuesIn(kFewValues), RowName);

// Whoever asks sorts the cases then.
TEST(ValueTally, LeavesManyValuesAndNaNAlone) {
  Random random(TestSeed());
  ValueTally tally;
  std::vector<EFBINDataTuple> runs;
  const auto canTally = [&](std::size_t count, const auto& valueAt) {
    std::vector<UnweightedEFCase> cases;
    for (std::size_t i = 0; i < count; ++i) cases.push_back({valueAt(i)});
    return tally.Tally(cases, runs);
  };
  const auto whole = [](std::size_t i) { return static_cast<double>(i % 100); };
  EXPECT_FALSE(canTally(1023, whole));
  EXPECT_FALSE(canTally(50000, [](std::size_t i) { return static_cast<double>(i); }));
  EXPECT_FALSE(canTally(50000, [](std::size_t i) {
    return i % 2 == 0 ? -1.0 : static_cast<double>(i / 2 % 4096);
  })) << "4097";
  EXPECT_TRUE(canTally(50000, [](std::size_t i) { return static_cast<double>(i % 1000); }));
  // All of these want the same place of the table.
  const auto crowd = [](std::size_t i) {
    constexpr std::uint64_t kInverse = 0xf1de83e19937733d;  // of the factor, modulo 2^64
    const std::uint64_t once = kInverse * ((std::uint64_t{1} << 40) + i % 150);
    const auto value = std::bit_cast<double>(kInverse * (once ^ (once >> 32)));
    return std::isnan(value) ? 1.0 : value;
  };
  EXPECT_FALSE(canTally(50000, crowd));
  // All bits are also those of a place without a value.
  const double nans[] = {std::nan(""), -std::nan(""), std::bit_cast<double>(~std::uint64_t{0})};
  for (const double nan : nans) {
    for (const std::size_t place : {0U, 999U, 1999U}) {
      EXPECT_FALSE(canTally(2000, [&](std::size_t i) { return i == place ? nan : whole(i); }));
    }
  }
}

}  // namespace
