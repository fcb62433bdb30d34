// The searches of dense and of sparse tables against the plain scan, bit by bit.

#include "algorithm/splitsearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "algorithm/binentropy.h"
#include "algorithm/mdlp.h"
#include "algorithm/rowboundaries.h"
#include "algorithm/sparsesearch.h"
#include "algorithm/sparsetable.h"
#include "support/agreement.h"
#include "support/reference.h"
#include "support/rowname.h"
#include "support/scenario.h"

namespace {

using Random = std::mt19937_64;
using Table = std::vector<double>;

double Whole(Random& random, int most) {
  return static_cast<double>(std::uniform_int_distribution<int>(0, most)(random));
}

struct Size {
  std::size_t rows;
  std::size_t categories;

  double Cells() const { return static_cast<double>(rows * categories); }
};

// Fills `weight(row, category)` into a table.
template <typename Weight>
Table Fill(Size size, Weight weight) {
  Table table;
  for (std::size_t row = 0; row < size.rows; ++row) {
    for (std::size_t category = 0; category < size.categories; ++category) {
      table.push_back(weight(row, category));
    }
  }
  return table;
}

// One case a row: half of them of a category that goes from the first to the last.
Table OneCaseARow(Random& random, Size size) {
  Table table(size.rows * size.categories);
  for (std::size_t row = 0; row < size.rows; ++row) {
    const bool follows = random() % 2 == 0;
    const std::size_t inOrder = row * size.categories / size.rows;
    table[row * size.categories + (follows ? inOrder : random() % size.categories)] = 1.0;
  }
  return table;
}

Table Drawn(Size size, const std::function<double()>& draw) {
  return Fill(size, [&](std::size_t, std::size_t) { return draw(); });
}

struct Shape {
  const char* name;
  Table (*make)(Random& random, Size size);
};

const Shape kShapes[] = {
    {"HalfSeparated", [](Random& random, Size size) { return OneCaseARow(random, size); }},
    {"Counts",
     [](Random& random, Size size) { return Drawn(size, [&] { return Whole(random, 3); }); }},
    {"MirroredTies",
     [](Random&, Size size) {
       return Fill(size, [&](std::size_t row, std::size_t category) {
         const bool isMiddle = row >= size.rows / 4 && row < size.rows - size.rows / 4;
         return category == (isMiddle ? 1 % size.categories : 0) ? 1.0 : 0.0;
       });
     }},
    {"AllEmpty", [](Random&, Size size) { return Table(size.rows * size.categories); }},
    {"FractionsInTheLastRow",  // that large sums before them cut short
     [](Random& random, Size size) {
       Table table = OneCaseARow(random, size);
       const auto categories = static_cast<std::ptrdiff_t>(size.categories);
       std::fill(table.begin(), table.begin() + categories, 281474976710656.0);
       std::fill(table.end() - categories, table.end(), 0.1);
       return table;
     }},
    {"NegativeWeights",
     [](Random& random, Size size) {
       return Drawn(size, [&] { return random() % 200 == 0 ? -1.0 : Whole(random, 3); });
     }},
    {"SumNearTwoTo53",
     [](Random& random, Size size) {
       const double most = std::floor(9007199254740992.0 / size.Cells());
       return Drawn(size, [&] { return random() % 2 == 0 ? most : Whole(random, 3); });
     }},
    {"SumBelowTwoTo52",
     [](Random& random, Size size) {
       const double most = std::floor(4.5e15 / size.Cells());
       return Drawn(size, [&] { return most - Whole(random, 1); });
     }},
    {"SumBeyondTwoTo53",  // where sums of whole numbers depend on their order
     [](Random& random, Size size) {
       const double most = std::floor(2e17 / size.Cells());
       return Drawn(size, [&] { return most - Whole(random, 3); });
     }},
    {"NaNWeight",
     [](Random& random, Size size) {
       Table table = OneCaseARow(random, size);
       table[table.size() / 2] = std::numeric_limits<double>::quiet_NaN();
       return table;
     }},
};

void PrintTo(const Shape& shape, std::ostream* os) { *os << shape.name; }

class SplitSearchTest : public testing::TestWithParam<Shape> {};

MCBinning::SparseTable SparseForm(const Table& table, std::size_t categories) {
  MCBinning::SparseTable sparse(categories);
  for (std::size_t cell = 0; cell < table.size(); ++cell) {
    if (cell % categories == 0) sparse.AddRow(static_cast<double>(cell));
    if (table[cell] != 0.0) sparse.AddWeight(cell % categories, table[cell]);
  }
  return sparse;
}

// The same numbers, or none when they are no counts.
std::vector<std::int32_t> CountsOf(const Table& table) {
  const bool areCounts = std::all_of(table.begin(), table.end(), [](double x) {
    return x >= 0.0 && x < 1e5 && x == std::floor(x);
  });
  return areCounts ? std::vector<std::int32_t>(table.begin(), table.end())
                   : std::vector<std::int32_t>();
}

// The best split of rows first..last, and the weights of both sides.
std::string Text(int best, const std::vector<double>& left, const std::vector<double>& right) {
  return "row " + std::to_string(best) + ": " + ::Text(left) + " | " + ::Text(right);
}

std::string PlainSplit(const Table& table, std::size_t categories, int first, int last,
                       bool rightBorderClosed) {
  std::vector<double> left(categories + 1, 0.0);
  std::vector<double> right = reference::SumRows(table, first, last, categories);
  const int best = reference::BestSplit(table, first, last, rightBorderClosed, left, right);
  return Text(best, left, right);
}

std::string Split(const MCBinning::RowSearch& search, int first, int last) {
  std::vector<double> left(search.GetCategoryCount() + 1, 0.0);
  std::vector<double> right(search.GetCategoryCount() + 1, 0.0);
  search.SumRows(first, last, right);
  const int best = search.FindBest(first, last, left, right);
  return Text(best, left, right);
}

TEST_P(SplitSearchTest, FindsWhatThePlainScanFinds) {
  Random random(TestSeed());
  for (const std::size_t categories : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U, 40U}) {
    for (const std::size_t rows : {601U, 5003U}) {
      const Table table = GetParam().make(random, {rows, categories});
      const MCBinning::SparseTable sparse = SparseForm(table, categories);
      const std::vector<std::int32_t> counts = CountsOf(table);
      const int end = static_cast<int>(rows);
      for (int round = 0; round < 8; ++round) {
        const int first = round == 0 ? 0 : static_cast<int>(random() % 300);
        const int upToEnd = end - 1 - static_cast<int>(random() % 2 * (random() % 60));
        const int last = round < 4 ? upToEnd : first + 20 + static_cast<int>(random() % 270);
        SCOPED_TRACE(testing::Message() << categories << " categories, rows " << first << " to "
                                        << last << ", seed " << TestSeed());
        const bool closed = round % 2 == 0;
        const bool isTableKnown = round % 3 != 0;
        const int knownFirst = isTableKnown ? 0 : first;
        const int knownLast = isTableKnown ? end - 1 : last;
        const MCBinning::SplitSearch search(table.data(), categories, closed, knownFirst,
                                            knownLast);
        const std::string plain = PlainSplit(table, categories, first, last, closed);
        ASSERT_EQ(Split(search, first, last), plain);
        if (!counts.empty()) {
          const MCBinning::CountSearch countSearch(counts.data(), categories, closed, knownFirst,
                                                   knownLast);
          ASSERT_EQ(Split(countSearch, first, last), plain) << "counts";
        }
        ASSERT_EQ(Split(MCBinning::SparseSearch(sparse, closed), first, last), plain) << "sparse";
      }
    }
  }
}

// Every cut that is accepted, and the first split.
std::string Text(const MCBinning::SplitFound& found, const std::set<double>& cuts) {
  return ::Text(std::vector<double>{found.cutPoint, found.gain, found.threshold}) + ": " +
         ::Text(std::vector<double>(cuts.begin(), cuts.end()));
}

// Interval by interval, each searched as a whole.
std::string PlainCuts(const Table& table, std::size_t categories, int rowCount, bool closed) {
  MCBinning::SplitFound found;
  std::set<double> cuts;
  std::vector<std::pair<int, int>> intervals{{0, rowCount - 1}};
  for (bool isWhole = true; !intervals.empty(); isWhole = false) {
    const auto [first, last] = intervals.back();
    intervals.pop_back();
    std::vector<double> left(categories + 1);
    std::vector<double> right = reference::SumRows(table, first, last, categories);
    const double entropy = MCBinning::Entropy(right);
    const double weight = right[0];
    const int best = reference::BestSplit(table, first, last, closed, left, right);
    const double gain = entropy - MCBinning::SplitEntropy(left, right);
    const double cost = MCBinning::SplitCost(left, right, entropy);
    const double threshold = MCBinning::Log2(weight - 1.0) / weight + cost / weight;
    if (isWhole) found = {static_cast<double>(best), gain, threshold};
    if (!(gain > threshold)) continue;
    cuts.insert(best);
    const int split = closed ? best : best - 1;
    if (split + 1 > first && split + 1 < last) intervals.emplace_back(split + 1, last);
    if (split < last && split > first) intervals.emplace_back(first, split);
  }
  return Text(found, cuts);
}

// Splits that cannot be accepted are not looked for; blocks have their sizes at their limits.
TEST(SplitRows, AcceptsWhatAPlainRecursionAccepts) {
  Random random(TestSeed());
  std::size_t cutCount = 0;
  for (const int rowCount : {2, 20, 48, 49, 50, 64, 65, 128, 129, 700, 65535, 65536}) {
    const int rounds = rowCount > 1000 ? 1 : 20;
    for (int round = 0; round < rounds; ++round) {
      SCOPED_TRACE(testing::Message() << rowCount << " rows, seed " << TestSeed());
      const auto rows = static_cast<std::size_t>(rowCount);
      const std::size_t categories = rowCount > 1000 ? 2 : 1 + random() % 10;
      const Table table = OneCaseARow(random, {rows, categories});
      std::vector<double> boundaries(rows);
      std::iota(boundaries.begin(), boundaries.end(), 0.0);
      const bool closed = round % 2 == 0;
      const std::string plain = PlainCuts(table, categories, rowCount, closed);
      const auto cutsOf = [&](const MCBinning::RowSearch& search) {
        std::set<double> cuts;
        const MCBinning::SplitFound found = MCBinning::SplitRows(
            search, MCBinning::ListedBoundaries(boundaries), 0, rowCount - 1, cuts);
        cutCount += cuts.size();
        return Text(found, cuts);
      };
      const std::vector<std::int32_t> counts = CountsOf(table);
      const MCBinning::SparseTable sparse = SparseForm(table, categories);
      ASSERT_EQ(cutsOf(MCBinning::SplitSearch(table.data(), categories, closed, 0, rowCount - 1)),
                plain);
      ASSERT_EQ(cutsOf(MCBinning::CountSearch(counts.data(), categories, closed, 0, rowCount - 1)),
                plain);
      ASSERT_EQ(cutsOf(MCBinning::SparseSearch(sparse, closed)), plain);
    }
  }
  EXPECT_GT(cutCount, 300u);
}

INSTANTIATE_TEST_SUITE_P(Tables, SplitSearchTest, testing::ValuesIn(kShapes), RowName);

}  // namespace
