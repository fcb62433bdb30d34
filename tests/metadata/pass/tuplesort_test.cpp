// The radix sort, as a whole and as far as somebody looks, against a stable sort by comparison: bit
// by bit and in the order of ties.

#include "metadata/pass/tuplesort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <vector>

#include "metadata/efbindatatuple.h"
#include "metadata/pass/lazyorder.h"
#include "support/rowname.h"
#include "support/scenario.h"

namespace {

using Random = std::mt19937_64;

struct Values {
  const char* name;
  double (*draw)(Random& random, std::size_t index);
};

using Limits = std::numeric_limits<double>;
const double kSpecial[] = {0.0, Limits::quiet_NaN(), Limits::infinity(), Limits::denorm_min(),
                           1.0, Limits::max()};

double Special(Random& random) {
  return (random() % 2 == 0 ? 1.0 : -1.0) * kSpecial[random() % std::size(kSpecial)];
}

double Normal(Random& random) { return std::normal_distribution<double>()(random); }

const Values kValues[] = {
    {"Normal", [](Random& random, std::size_t) { return Normal(random); }},
    {"Skewed", [](Random& random, std::size_t) { return std::exp(3.0 * Normal(random)); }},
    {"Ties", [](Random& random, std::size_t) { return std::floor(10.0 * Normal(random)); }},
    {"Special", [](Random& random, std::size_t) { return Special(random); }},
    {"SpecialAmongOthers",
     [](Random& random, std::size_t) {
       return random() % 4 == 0 ? Special(random) : Normal(random);
     }},
    {"AnyBits", [](Random& random, std::size_t) { return std::bit_cast<double>(random()); }},
    {"Sorted", [](Random&, std::size_t index) { return static_cast<double>(index); }},
    {"Descending", [](Random&, std::size_t index) { return -static_cast<double>(index / 3); }},
    {"Constant", [](Random&, std::size_t) { return 7.0; }},
    // Agree in their leading bits, but for a few far away.
    {"OneCrowd",
     [](Random& random, std::size_t index) {
       return index % 100 == 99 ? 1e9 * Normal(random) : 1.0 + 1e-12 * Normal(random);
     }},
    {"ManySmallCrowds",
     [](Random& random, std::size_t) {
       return static_cast<double>(random() % 200) + 1e-13 * static_cast<double>(random() % 40);
     }},
};

void PrintTo(const Values& values, std::ostream* os) { *os << values.name; }

class TupleSorterTest : public testing::TestWithParam<Values> {};

std::vector<EFBINDataTuple> Draw(const Values& values, Random& random, std::size_t count) {
  std::vector<EFBINDataTuple> cases;
  for (std::size_t i = 0; i < count; ++i) {
    // The weight tells where a case came from.
    cases.push_back({values.draw(random, i), static_cast<double>(i)});
  }
  return cases;
}

std::vector<EFBINDataTuple> Sorted(std::vector<EFBINDataTuple> cases) {
  std::stable_sort(cases.begin(), cases.end(), [](const auto& a, const auto& b) {
    return std::isnan(b.value) ? !std::isnan(a.value) : a.value < b.value;
  });
  return cases;
}

void ExpectSame(const EFBINDataTuple& found, const EFBINDataTuple& expected) {
  EXPECT_EQ(found.weight, expected.weight);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(found.value),
            std::bit_cast<std::uint64_t>(expected.value));
}

TEST_P(TupleSorterTest, SortsAsAStableComparisonDoes) {
  Random random(TestSeed());
  MCBinning::TupleSorter<EFBINDataTuple> sorter;
  for (const std::size_t count : {0U, 1U, 2U, 31U, 32U, 3000U, 32768U, 32769U, 100000U}) {
    SCOPED_TRACE(testing::Message() << count << " cases, seed " << TestSeed());
    std::vector<EFBINDataTuple> cases = Draw(GetParam(), random, count);
    const std::vector<EFBINDataTuple> expected = Sorted(cases);

    std::size_t used = 0;
    sorter.Sort(cases, [&](const EFBINDataTuple* part, std::size_t size) {
      if (used > 0 && size > 0) {
        EXPECT_FALSE(expected[used - 1].value == expected[used].value);
      }
      for (std::size_t i = 0; i < size && !HasFailure(); ++i) {
        ExpectSame(part[i], expected[used + i]);
      }
      used += size;
    });

    EXPECT_EQ(used, count);
    ASSERT_EQ(cases.size(), expected.size());
    for (std::size_t i = 0; i < count && !HasFailure(); ++i) ExpectSame(cases[i], expected[i]);
  }
}

TEST_P(TupleSorterTest, SortsWhatIsLookedInto) {
  Random random(TestSeed());
  MCBinning::LazyOrder<EFBINDataTuple> order;
  for (const std::size_t count : {100000U, 1U, 3000U, 32769U, 100001U}) {
    SCOPED_TRACE(testing::Message() << count << " cases, seed " << TestSeed());
    std::vector<EFBINDataTuple> cases = Draw(GetParam(), random, count);
    const std::vector<EFBINDataTuple> expected = Sorted(cases);

    order.Begin(cases);
    EXPECT_EQ(order.CountDistinct(),
              MCBinning::CountDistinctSorted(expected.data(), expected.size()));
    ExpectSame(cases.front(), expected.front());
    ExpectSame(cases.back(), expected.back());
    for (int look = 0; look < 20; ++look) {
      const std::size_t position = random() % count;
      const std::size_t end = order.LookInto(position);
      EXPECT_EQ(end, order.EndOfBucket(position));
      ASSERT_GT(end, position);
      EXPECT_TRUE(end == count || !(expected[end - 1].value == expected[end].value));
      for (std::size_t i = position; i < end && !HasFailure(); ++i) {
        ExpectSame(cases[i], expected[i]);
      }
    }
    order.SortAll();
    for (std::size_t i = 0; i < count && !HasFailure(); ++i) ExpectSame(cases[i], expected[i]);
  }
}

INSTANTIATE_TEST_SUITE_P(Inputs, TupleSorterTest, testing::ValuesIn(kValues), RowName);

}  // namespace
