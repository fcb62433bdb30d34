#include "algorithm/splitsearch.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <numeric>

#include "algorithm/binentropy.h"
#include "algorithm/nearlog.h"
#include "common/prefetch.h"

namespace MCBinning {

namespace {

// A block is looked at whole; then its leaves, if need be; then a leaf's rows.
// Blocks of large tables are larger: their bounds take time, too.
constexpr std::size_t kManyRows = 65536;
constexpr std::size_t kBlockRows = 64;
constexpr std::size_t kLargeBlockRows = 128;

// The more a block or a leaf weighs, the further its rows' scores may lie above what bounds them.
// In a small table whose rows are heavy, no larger block is ever left out; the sums of small tables
// are for such blocks, whatever the rows weigh.
constexpr std::size_t kManyHeavyRows = 4096;
constexpr std::size_t kHeavyBlockRows = 16;
constexpr double kHeavyRow = 8.0;
constexpr std::size_t kMostLeafRows = 32;
constexpr std::size_t kFewestLeafRows = 4;
constexpr double kLeafWeight = 64.0;

// Shorter tables, and shorter intervals of others, are scanned at once.
constexpr std::size_t kFewRows = 48;

constexpr double kTwoTo52 = 4503599627370496.0;

using Weights = std::array<double, SplitSearch::kMostCategories>;

// With the number of categories known, the sums stay in registers.
template <typename Number, std::size_t kCategories>
void AddRowsOf(const Number* row, const Number* end, Weights& weights) {
  std::array<Number, kCategories> sums{};
  for (; row < end; row += kCategories) {
    for (std::size_t category = 0; category < kCategories; ++category)
      sums[category] += row[category];
  }
  for (std::size_t category = 0; category < kCategories; ++category)
    weights[category] += static_cast<double>(sums[category]);
}

// Adds many rows, and tells whether all their weights are whole numbers, none of them negative:
// between 2^52 and 2^53 a double has no fraction bits, so there a sum loses what is not whole.
// Numbers above 2^51 may be taken for whole; their sum shows them. A few rows are summed side by
// side, so that no addition waits for the one before.
template <std::size_t kCategories>
bool AddWholeRowsOf(const double* row, const double* end, Weights& weights) {
  constexpr std::size_t kLanes = std::max<std::size_t>(8 / kCategories, 1) * kCategories;
  std::array<double, kLanes> sums{};
  std::array<std::uint64_t, kLanes> lostBits{};
  std::array<std::uint64_t, kLanes> allBits{};
  const auto add = [&](std::size_t lanes) {
    for (std::size_t lane = 0; lane < lanes; ++lane) {
      const double x = row[lane];
      const double lost = ((x + kTwoTo52) - kTwoTo52) - x;
      sums[lane] += x;
      lostBits[lane] |= std::bit_cast<std::uint64_t>(lost);
      allBits[lane] |= std::bit_cast<std::uint64_t>(x);
    }
  };
  for (; end - row >= static_cast<std::ptrdiff_t>(kLanes); row += kLanes) {
    FetchAhead(row, kFarAhead);
    add(kLanes);
  }
  for (; row < end; row += kCategories) add(kCategories);

  constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
  std::uint64_t wrongBits = 0;
  for (std::size_t lane = 0; lane < kLanes; ++lane) {
    weights[lane % kCategories] += sums[lane];
    wrongBits |= lostBits[lane] | (allBits[lane] & kSign);
  }
  return wrongBits == 0;
}

// Counts are whole.
template <std::size_t kCategories>
bool AddWholeRowsOf(const std::int32_t* row, const std::int32_t* end, Weights& weights) {
  constexpr std::size_t kLanes = std::max<std::size_t>(8 / kCategories, 1) * kCategories;
  std::array<std::int32_t, kLanes> sums{};
  for (; end - row >= static_cast<std::ptrdiff_t>(kLanes); row += kLanes) {
    FetchAhead(row, kFarAhead);
    for (std::size_t lane = 0; lane < kLanes; ++lane) sums[lane] += row[lane];
  }
  for (; row < end; row += kCategories) {
    for (std::size_t category = 0; category < kCategories; ++category)
      sums[category] += row[category];
  }
  for (std::size_t lane = 0; lane < kLanes; ++lane) weights[lane % kCategories] += sums[lane];
  return true;
}

// Of each row, the sums of the rows up to it follow those of the row before; the first sums are
// there.
template <typename Number, std::size_t kCategories>
void AddUpRowsOf(const Number* row, std::size_t count, double* sums) {
  const Number* const end = row + count * kCategories;
  std::array<Number, kCategories> added{};
  const double* const before = sums;
  for (; row < end; row += kCategories) {
    sums += kCategories;
    for (std::size_t category = 0; category < kCategories; ++category) {
      added[category] += row[category];
      sums[category] = before[category] + added[category];
    }
  }
}

// What splits with these weights on their left score at least, along a line, and the lowest of
// that, found a few side by side.
template <std::size_t kCategories>
double BoundSplitsOf(const double* sums, std::size_t count, double constant, const double* slopes,
                     double* bounds) {
  for (std::size_t i = 0; i < count; ++i) {
    double bound = constant;
    for (std::size_t category = 0; category < kCategories; ++category)
      bound += slopes[category] * sums[i * kCategories + category];
    bounds[i] = bound;
  }
  constexpr std::size_t kLanes = 8;
  std::array<double, kLanes> lowest;
  lowest.fill(std::numeric_limits<double>::infinity());
  std::size_t i = 0;
  for (; i + kLanes <= count; i += kLanes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane)
      lowest[lane] = std::min(lowest[lane], bounds[i + lane]);
  }
  for (; i < count; ++i) lowest[0] = std::min(lowest[0], bounds[i]);
  return *std::min_element(lowest.begin(), lowest.end());
}

// By the number of categories, from 2 on. Called by pointer, each is compiled on its own: worked
// into the loop around it, the second loses its vector instructions (2.8 instead of 2.2 ms for a
// search of a million values).
template <typename Number>
constexpr std::array kAddRows{&AddRowsOf<Number, 2>, &AddRowsOf<Number, 3>, &AddRowsOf<Number, 4>,
                              &AddRowsOf<Number, 5>, &AddRowsOf<Number, 6>, &AddRowsOf<Number, 7>,
                              &AddRowsOf<Number, 8>};
template <typename Number>
using AddWhole = bool (*)(const Number* row, const Number* end, Weights& weights);
template <typename Number>
constexpr std::array<AddWhole<Number>, kAddRows<Number>.size()> kAddWholeRows{
    &AddWholeRowsOf<2>, &AddWholeRowsOf<3>, &AddWholeRowsOf<4>, &AddWholeRowsOf<5>,
    &AddWholeRowsOf<6>, &AddWholeRowsOf<7>, &AddWholeRowsOf<8>};
template <typename Number>
constexpr std::array kAddUpRows{&AddUpRowsOf<Number, 2>, &AddUpRowsOf<Number, 3>,
                                &AddUpRowsOf<Number, 4>, &AddUpRowsOf<Number, 5>,
                                &AddUpRowsOf<Number, 6>, &AddUpRowsOf<Number, 7>,
                                &AddUpRowsOf<Number, 8>};
constexpr std::array kBoundSplits{&BoundSplitsOf<2>, &BoundSplitsOf<3>, &BoundSplitsOf<4>,
                                  &BoundSplitsOf<5>, &BoundSplitsOf<6>, &BoundSplitsOf<7>,
                                  &BoundSplitsOf<8>};
static_assert(kAddRows<double>.size() == SplitSearch::kMostCategories - 1 &&
              kAddUpRows<double>.size() == kAddRows<double>.size() &&
              kBoundSplits.size() == kAddRows<double>.size());

template <typename Number>
void MoveRow(const Number* row, std::vector<double>& left, std::vector<double>& right) {
  for (std::size_t category = 1; category < left.size(); ++category) {
    const double weight = row[category - 1];
    left[0] += weight;
    left[category] += weight;
    right[0] -= weight;
    right[category] -= weight;
  }
}

}  // namespace

// The rows of a part that one line bounds.
template <typename Number>
struct TableSearch<Number>::Leaf {
  std::size_t first;
  std::size_t count;
  // For each row, the weights on the left of the split there, by category.
  const double* left;
  const double* bounds;  // no split there has a lower score
};

template <typename Number>
TableSearch<Number>::TableSearch(const Number* binTable, std::size_t categoryCount,
                                 bool rightBorderClosed, int first, int last)
    : RowSearch(categoryCount, rightBorderClosed), fTable(binTable) {
  const bool isWorthIt = last - first >= static_cast<int>(kFewRows) && categoryCount >= 2 &&
                         categoryCount <= kMostCategories;
  if (isWorthIt) SumBlocks(static_cast<std::size_t>(first), static_cast<std::size_t>(last) + 1);
}

template <typename Number>
void TableSearch<Number>::SumBlocks(std::size_t first, std::size_t end) {
  fFirstRow = first;
  fBlockRows = end - first < kManyRows ? kBlockRows : kLargeBlockRows;
  fSumRows = end - first < kManyHeavyRows ? kHeavyBlockRows : fBlockRows;
  fBlockSums.reserve(((end - first) / fSumRows + 1) * GetCategoryCount());
  Weights weights{};
  bool areWhole = true;
  for (std::size_t row = first;; row += fSumRows) {
    fBlockSums.insert(fBlockSums.end(), weights.begin(),
                      weights.begin() + static_cast<std::ptrdiff_t>(GetCategoryCount()));
    const std::size_t next = std::min(row + fSumRows, end);
    areWhole = kAddWholeRows<Number>[GetCategoryCount() - 2](RowAt(row), RowAt(next), weights);
    if (row + fSumRows > end || !areWhole) break;
  }
  const double total = std::accumulate(weights.begin(), weights.end(), 0.0);
  if (!areWhole || !(total < kLeastInexactSum)) fBlockSums.clear();

  const double rowWeight = total / static_cast<double>(end - first);
  if (rowWeight > kHeavyRow) fBlockRows = fSumRows;
  fLeafRows = kMostLeafRows;
  while (fLeafRows > kFewestLeafRows && static_cast<double>(fLeafRows) * rowWeight > kLeafWeight)
    fLeafRows /= 2;
}

template <typename Number>
void TableSearch<Number>::AddRows(std::size_t first, std::size_t end, Weights& weights) const {
  kAddRows<Number>[GetCategoryCount() - 2](RowAt(first), RowAt(end), weights);
}

// The weights of the rows from the first one up to `row`, exact, from the sums of whole blocks.
template <typename Number>
auto TableSearch<Number>::SumBefore(std::size_t row) const -> Weights {
  Weights weights{};
  const std::size_t block = (row - fFirstRow) / fSumRows;
  std::copy_n(fBlockSums.begin() + static_cast<std::ptrdiff_t>(block * GetCategoryCount()),
              GetCategoryCount(), weights.begin());
  AddRows(fFirstRow + block * fSumRows, row, weights);
  return weights;
}

template <typename Number>
void TableSearch<Number>::SumRows(int first, int last, std::vector<double>& sum) const {
  const auto from = static_cast<std::size_t>(first);
  const std::size_t end = static_cast<std::size_t>(last) + 1;
  std::fill(sum.begin(), sum.end(), 0.0);
  if (from < end && !fBlockSums.empty()) {
    const Weights below = SumBefore(from);
    const Weights upTo = SumBefore(end);
    for (std::size_t category = 0; category < GetCategoryCount(); ++category) {
      sum[category + 1] = upTo[category] - below[category];
    }
  } else {
    for (std::size_t row = from; row < end; ++row) {
      for (std::size_t category = 0; category < GetCategoryCount(); ++category) {
        sum[category + 1] += RowAt(row)[category];
      }
    }
  }
  for (std::size_t category = 1; category <= GetCategoryCount(); ++category)
    sum[0] += sum[category];
}

template <typename Number>
BestSplit TableSearch<Number>::Find(int first, int last, const std::vector<double>& totals,
                                    std::vector<double>& left, std::vector<double>& right,
                                    double limit) const {
  Search search{static_cast<std::size_t>(first),
                static_cast<std::size_t>(last),
                totals,
                left,
                right,
                {},
                limit};
  if (!fBlockSums.empty() && static_cast<std::size_t>(last - first) > kFewRows) {
    ScanBlocks(search);
  } else {
    ScanRows(search);
  }
  return search.best;
}

template <typename Number>
bool TableSearch<Number>::IsBoundary(std::size_t row) const {
  const Number* const weights = RowAt(row);
  const Number* const next = RowAt(row + 1);
  int shared = 0;
  for (std::size_t category = 0; category < GetCategoryCount(); ++category) {
    const bool isEmpty = weights[category] == Number{};
    const bool isNextEmpty = next[category] == Number{};
    if (isEmpty != isNextEmpty) return true;
    if (!isEmpty && ++shared > 1) return true;
  }
  return shared != 1;
}

// The score that RunningSplit would give the split under evaluation.
template <typename Number>
double TableSearch<Number>::NearScore(const Search& search) const {
  double score = NearXLogX(search.left[0]) + NearXLogX(search.right[0]);
  for (std::size_t category = 1; category <= GetCategoryCount(); ++category) {
    score -= NearXLogX(search.left[category]) + NearXLogX(search.right[category]);
  }
  return score;
}

// Evaluates the split at a row, unless its score tells that it is not the best.
template <typename Number>
void TableSearch<Number>::Evaluate(Search& search, std::size_t row) const {
  if (!fBlockSums.empty() && NearScore(search) > search.limit) return;
  const double entropy = SplitEntropy(search.left, search.right);
  if (search.best.Offer(row, entropy)) {
    const double total = search.totals[0];
    const double score = RunningSplit::ScoreOf(entropy, total);
    search.limit = std::min(search.limit, score + RunningSplit::MarginOf(total));
  }
}

template <typename Number>
void TableSearch<Number>::ScanRows(Search& search) const {
  bool wasBoundary = false;
  for (std::size_t row = search.first; row <= search.last; ++row) {
    const bool isBoundary = row < search.last && IsBoundary(row);
    if (IsRightBorderClosed()) MoveRow(RowAt(row), search.left, search.right);
    if (wasBoundary || isBoundary) Evaluate(search, row);
    if (!IsRightBorderClosed()) MoveRow(RowAt(row), search.left, search.right);
    wasBoundary = isBoundary;
  }
}

template <typename Number>
void TableSearch<Number>::ScanBlocks(Search& search) const {
  const std::size_t end = search.last + 1;
  const Weights start = SumBefore(search.first);
  Weights left;
  const auto weightsBefore = [&](std::size_t row) {
    left = SumBefore(row);
    for (std::size_t category = 0; category < GetCategoryCount(); ++category) {
      left[category] -= start[category];
    }
    return left.data();
  };
  const auto borderAbove = [&](std::size_t row) { return NextBorder(row, fBlockRows); };
  RunningSplit split(search.totals);
  const std::vector<SplitPart> parts =
      BoundParts(split, search.first, end, borderAbove, weightsBefore, search.limit);
  const SplitPart& likeliest = *std::min_element(
      parts.begin(), parts.end(),
      [](const SplitPart& a, const SplitPart& b) { return a.leastScore < b.leastScore; });
  weightsBefore(likeliest.first);
  LowerLimit(search, split, likeliest, left);
  for (const SplitPart& part : parts) {
    if (!(part.leastScore <= search.limit)) continue;
    weightsBefore(part.first);
    ScanPart(search, split, part, left);
  }
}

// `before` are the interval's weights below the part.
template <typename Number>
template <typename UseLeaf>
void TableSearch<Number>::VisitLeaves(RunningSplit& split, const SplitPart& part,
                                      const Weights& before, const UseLeaf& useLeaf) const {
  const std::size_t categoryCount = GetCategoryCount();
  std::array<double, (kMostLeafRows + 1) * kMostCategories> sums;
  std::array<double, kMostLeafRows> bounds;
  std::copy_n(before.begin(), categoryCount, sums.begin());
  split.Place(before.data());
  for (std::size_t row = part.first; row < part.end;) {
    const std::size_t count = std::min(NextBorder(row, fLeafRows), part.end) - row;
    kAddUpRows<Number>[categoryCount - 2](RowAt(row), count, sums.data());
    const double* const after = sums.data() + count * categoryCount;
    Weights slopes{};
    const double constant = split.AdvanceAlongLine(after, slopes.data());
    const double* const left = sums.data() + (IsRightBorderClosed() ? categoryCount : 0);
    const double lowest =
        kBoundSplits[categoryCount - 2](left, count, constant, slopes.data(), bounds.data());
    useLeaf(Leaf{row, count, left, bounds.data()}, lowest);
    std::copy_n(after, categoryCount, sums.begin());
    row += count;
  }
}

// To what a split of the part's lowest leaf scores at most: what comes before the best split is
// then skipped as what comes after it.
template <typename Number>
void TableSearch<Number>::LowerLimit(Search& search, RunningSplit& split, const SplitPart& part,
                                     const Weights& before) const {
  double lowest = std::numeric_limits<double>::infinity();
  Weights left{};
  VisitLeaves(split, part, before, [&](const Leaf& leaf, double leafLowest) {
    if (!(leafLowest < lowest)) return;
    lowest = leafLowest;
    const auto row = std::min_element(leaf.bounds, leaf.bounds + leaf.count) - leaf.bounds;
    std::copy_n(leaf.left + static_cast<std::size_t>(row) * GetCategoryCount(), GetCategoryCount(),
                left.begin());
  });
  split.Place(left.data());
  search.limit = std::min(search.limit, split.GetScore() + split.GetMargin());
}

template <typename Number>
void TableSearch<Number>::ScanPart(Search& search, RunningSplit& split, const SplitPart& part,
                                   const Weights& before) const {
  VisitLeaves(split, part, before, [&](const Leaf& leaf, double lowest) {
    if (lowest <= search.limit) ScanLeaf(search, leaf);
  });
}

// Evaluates the splits of a leaf, but for those that are known not to be the best.
template <typename Number>
void TableSearch<Number>::ScanLeaf(Search& search, const Leaf& leaf) const {
  for (std::size_t i = 0; i < leaf.count; ++i) {
    if (leaf.bounds[i] > search.limit) continue;
    const std::size_t row = leaf.first + i;
    const double* const left = leaf.left + i * GetCategoryCount();
    if (!IsCandidate(search.first, search.last, row)) continue;
    search.left[0] = 0.0;
    for (std::size_t category = 0; category < GetCategoryCount(); ++category) {
      search.left[0] += left[category];
      search.left[category + 1] = left[category];
    }
    Subtract(search.totals, search.left, search.right);
    Evaluate(search, row);
  }
}

template class TableSearch<double>;
template class TableSearch<std::int32_t>;

}  // namespace MCBinning
