// Cases in one word against what they stand for: every bit of the value, the target, and the order.

#include "metadata/pass/packedcase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "metadata/pass/loosecases.h"
#include "metadata/pass/tuplesort.h"
#include "support/scenario.h"

namespace {

using Random = std::mt19937_64;
using Held = std::vector<std::pair<std::uint64_t, unsigned int>>;  // bits of a value, target

constexpr double kInfinity = HUGE_VAL;

// Of all magnitudes, the rare ones included, and in part with ties.
double Draw(Random& random) {
  const double sign = random() % 2 == 0 ? 1.0 : -1.0;
  switch (random() % 5) {
    case 0:
      return sign * 0.0;
    case 1:
      return std::bit_cast<double>(random());
    case 2:
      return sign * static_cast<double>(random() % 100) / 100.0;
    default:
      return std::normal_distribution<double>()(random);
  }
}

// Of a range that they lie evenly in but for some ties, some too close to tell and a few far away.
double DrawEvenly(Random& random) {
  const double value = std::normal_distribution<double>()(random);
  switch (random() % 500) {
    case 0:
      return 1e6 * value;
    case 1:
    case 2:
      return random() % 2 == 0 ? 0.0 : -0.0;
    default:
      break;
  }
  const bool isRounded = random() % 5 == 0;
  return isRounded ? std::round(50.0 * value) / 50.0 + std::ldexp(random() % 4, -40) : value;
}

template <typename Case>
Held HeldBy(const std::vector<Case>& packed) {
  Held held;
  for (const Case& item : packed) {
    held.emplace_back(std::bit_cast<std::uint64_t>(item.GetValue()), item.GetTarget());
  }
  return held;
}

template <int kTargetBits>
void ExpectSortedAsValues(Random& random, double (*draw)(Random&), std::size_t count) {
  using Case = MCBinning::PackedCase<kTargetBits>;
  SCOPED_TRACE(testing::Message() << kTargetBits << " target bits, " << count << " cases, seed "
                                  << TestSeed());
  std::vector<std::pair<double, unsigned int>> cases;
  std::vector<Case> packed, packedLast;
  MCBinning::LooseCases loose;
  while (packed.size() < count) {
    const double value = draw(random);
    const auto target = static_cast<unsigned int>(random() % Case::kTargetCount);
    if (!Case::CanHold(value, target)) continue;
    cases.emplace_back(value, target);
    packed.emplace_back(value, target);
    loose.values.push_back(value);
    loose.targets.push_back(static_cast<std::uint8_t>(target));
  }
  std::stable_sort(cases.begin(), cases.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  Held expected;
  for (const auto& [value, target] : cases) {
    expected.emplace_back(std::bit_cast<std::uint64_t>(value), target);
  }

  MCBinning::TupleSorter<Case>().Sort(packed);
  EXPECT_TRUE(HeldBy(packed) == expected);
  MCBinning::TupleSorter<Case>().Sort(loose, packedLast, [](const Case*, std::size_t) {});
  EXPECT_TRUE(HeldBy(packedLast) == expected) << "packed at the end";
}

template <int kTargetBits>
void ExpectAllHeldWhereEachIs(const std::vector<double>& values) {
  using Case = MCBinning::PackedCase<kTargetBits>;
  const auto isHeld = [](double value) { return Case::CanHold(value, 0); };
  for (const double value : values) {
    EXPECT_EQ(Case::CanHoldAll(&value, 1), isHeld(value))
        << value << ", target bits " << kTargetBits;
    const std::vector<double> among{0.0, 1.0, -3.5, value, 2.0};
    EXPECT_EQ(Case::CanHoldAll(among.data(), among.size()), isHeld(value)) << value;
  }
}

TEST(PackedCase, HoldsAllValuesOfWhichItHoldsEach) {
  std::vector<double> values{0.0,     -0.0,         1.0,       DBL_MAX,
                             DBL_MIN, DBL_TRUE_MIN, kInfinity, std::nan("")};
  for (const int exponent : {-384, -24, 40, 640}) {  // where what is held begins and ends
    const double border = std::ldexp(1.0, exponent);
    for (const double value :
         {std::nextafter(border, 0.0), border, std::nextafter(border, kInfinity)}) {
      values.push_back(value);
      values.push_back(-value);
    }
  }
  ExpectAllHeldWhereEachIs<1>(values);
  ExpectAllHeldWhereEachIs<5>(values);
}

TEST(PackedCase, IsSortedAsItsValueIs) {
  Random random(TestSeed());
  for (const auto draw : {Draw, DrawEvenly}) {
    for (const std::size_t count : {2U, 31U, 1023U, 1024U, 3000U, 32768U, 32769U, 100000U}) {
      ExpectSortedAsValues<1>(random, draw, count);
      ExpectSortedAsValues<5>(random, draw, count);
    }
  }
}

TEST(PackedCase, HoldsWhatItsBitsAreFor) {
  const double nan = std::nan("");
  struct Row {
    double least, most;  // magnitudes that the bits end before
    unsigned int targets;
    bool (*canHold)(double value, unsigned int target);
  };
  for (const Row& row : {Row{0x1p-384, 0x1p640, 2, &MCBinning::PackedCase<1>::CanHold},
                         Row{0x1p-24, 0x1p40, 32, &MCBinning::PackedCase<5>::CanHold}}) {
    for (const double sign : {1.0, -1.0}) {
      EXPECT_FALSE(row.canHold(sign * row.least, 0));
      EXPECT_TRUE(row.canHold(sign * std::nextafter(row.least, 1.0), row.targets - 1));
      EXPECT_TRUE(row.canHold(sign * std::nextafter(row.most, 0.0), 0));
      EXPECT_FALSE(row.canHold(sign * row.most, 0));
      EXPECT_FALSE(row.canHold(sign * kInfinity, 0));
      EXPECT_FALSE(row.canHold(sign * nan, 0));
      EXPECT_FALSE(row.canHold(sign * 5e-324, 0));
      EXPECT_TRUE(row.canHold(sign * 0.0, 0));
      EXPECT_FALSE(row.canHold(sign * 1.0, row.targets));
    }
  }
}

}  // namespace
