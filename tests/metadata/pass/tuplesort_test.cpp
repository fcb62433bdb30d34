// The radix sort against a stable sort by comparison, bit by bit and in the order of ties.

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

TEST_P(TupleSorterTest, SortsAsAStableComparisonDoes) {
  Random random(TestSeed());
  MCBinning::TupleSorter<EFBINDataTuple> sorter;
  for (const std::size_t count : {0U, 1U, 2U, 31U, 32U, 3000U, 32768U, 32769U, 100000U}) {
    SCOPED_TRACE(testing::Message() << count << " cases, seed " << TestSeed());
    std::vector<EFBINDataTuple> cases;
    for (std::size_t i = 0; i < count; ++i) {
      cases.push_back({GetParam().draw(random, i), static_cast<double>(i)});
    }
    std::vector<EFBINDataTuple> expected = cases;
    std::stable_sort(expected.begin(), expected.end(), [](const auto& a, const auto& b) {
      return std::isnan(b.value) ? !std::isnan(a.value) : a.value < b.value;
    });

    sorter.Sort(cases);

    ASSERT_EQ(cases.size(), expected.size());
    for (std::size_t i = 0; i < count; ++i) {
      // The weight tells where a case came from.
      ASSERT_EQ(cases[i].weight, expected[i].weight) << "at " << i;
      ASSERT_EQ(std::bit_cast<std::uint64_t>(cases[i].value),
                std::bit_cast<std::uint64_t>(expected[i].value));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Inputs, TupleSorterTest, testing::ValuesIn(kValues), RowName);

}  // namespace
