#include "algorithm/sparsesearch.h"

#include <algorithm>
#include <cmath>

#include "algorithm/binentropy.h"
#include "algorithm/runningsplit.h"

namespace MCBinning {

namespace {

constexpr std::size_t kSparseBlockRows = 512;

// A block that is looked into is bounded this many rows at a time: at least so many, and so many
// for each category, as a bound takes time for each of them.
constexpr std::size_t kLeastBoundedRows = 64;
constexpr std::size_t kBoundedRowsPerCategory = 4;

void MoveRow(const SparseTable::Row& row, std::vector<double>& left, std::vector<double>& right) {
  for (std::size_t i = 0; i < row.size; ++i) {
    const std::size_t category = std::size_t{row.categories[i]} + 1;
    left[0] += row.weights[i];
    left[category] += row.weights[i];
    right[0] -= row.weights[i];
    right[category] -= row.weights[i];
  }
}

}  // namespace

SparseSearch::SparseSearch(const SparseTable& table, bool rightBorderClosed)
    : RowSearch(table.GetCategoryCount(), rightBorderClosed), fTable(table) {
  SumBlocks();
}

void SparseSearch::SumBlocks() {
  const std::size_t rowCount = fTable.GetRowCount();
  fBlockSums.reserve((rowCount / kSparseBlockRows + 1) * GetCategoryCount());
  Weights weights(GetCategoryCount());
  bool areWhole = true;
  for (std::size_t first = 0; first < rowCount; first += kSparseBlockRows) {
    fBlockSums.insert(fBlockSums.end(), weights.begin(), weights.end());
    const SparseTable::Row rows =
        fTable.GetRows(first, std::min(first + kSparseBlockRows, rowCount));
    for (std::size_t i = 0; i < rows.size; ++i) {
      areWhole &= rows.weights[i] > 0.0 && rows.weights[i] == std::floor(rows.weights[i]);
      weights[rows.categories[i]] += rows.weights[i];
    }
  }
  double total = 0.0;
  for (const double weight : weights) total += weight;
  if (!areWhole || !(total < kLeastInexactSum)) fBlockSums.clear();
}

void SparseSearch::AddRows(std::size_t first, std::size_t end, Weights& weights) const {
  const SparseTable::Row rows = fTable.GetRows(first, end);
  for (std::size_t i = 0; i < rows.size; ++i) weights[rows.categories[i]] += rows.weights[i];
}

// The weights of all rows before `row`, exact, from the sums of whole blocks.
SparseSearch::Weights SparseSearch::SumBefore(std::size_t row) const {
  const std::size_t block = std::min(row, fTable.GetRowCount() - 1) / kSparseBlockRows;
  const auto sums = fBlockSums.begin() + static_cast<std::ptrdiff_t>(block * GetCategoryCount());
  Weights weights(sums, sums + static_cast<std::ptrdiff_t>(GetCategoryCount()));
  AddRows(block * kSparseBlockRows, row, weights);
  return weights;
}

// The weights of the rows before `row` that are not among those of `start`, which lie below.
SparseSearch::Weights SparseSearch::SumBetween(const Weights& start, std::size_t row) const {
  Weights weights = SumBefore(row);
  for (std::size_t category = 0; category < weights.size(); ++category) {
    weights[category] -= start[category];
  }
  return weights;
}

void SparseSearch::SumRows(int first, int last, std::vector<double>& sum) const {
  const auto from = static_cast<std::size_t>(first);
  const std::size_t end = static_cast<std::size_t>(last) + 1;
  Weights weights(GetCategoryCount());
  if (from < end && end - from > kSparseBlockRows && !fBlockSums.empty()) {
    weights = SumBetween(SumBefore(from), end);
  } else if (from < end) {
    AddRows(from, end, weights);
  }
  sum[0] = 0.0;
  for (std::size_t category = 0; category < weights.size(); ++category) {
    sum[category + 1] = weights[category];
    sum[0] += weights[category];
  }
}

bool SparseSearch::IsBoundary(std::size_t row) const {
  const SparseTable::Row weights = fTable.GetRow(row);
  const SparseTable::Row next = fTable.GetRow(row + 1);
  return weights.size != 1 || next.size != 1 || weights.categories[0] != next.categories[0];
}

BestSplit SparseSearch::Find(int first, int last, const std::vector<double>& totals,
                             std::vector<double>& left, std::vector<double>& right,
                             double limit) const {
  Search search{static_cast<std::size_t>(first), static_cast<std::size_t>(last), totals, limit,
                BestSplit()};
  if (fBlockSums.empty()) {
    ScanPlainly(search, left, right);
    return search.best;
  }
  RunningSplit split(totals);
  const std::size_t rowCount = search.last + 1 - search.first;
  const bool isPure = split.GetCategoryCount() == 1 &&
                      fTable.GetRows(search.first, search.last + 1).size == rowCount;
  if (isPure) return {};  // no boundary anywhere
  const Weights start = SumBefore(search.first);
  for (const SplitPart& part : MakeParts(search, split, start)) {
    if (part.leastScore <= search.limit) ScanPart(search, split, part, start);
  }
  return search.best;
}

void SparseSearch::ScanPlainly(Search& search, std::vector<double>& left,
                               std::vector<double>& right) const {
  for (std::size_t row = search.first; row <= search.last; ++row) {
    if (IsRightBorderClosed()) MoveRow(fTable.GetRow(row), left, right);
    if (IsCandidate(search.first, search.last, row))
      search.best.Offer(row, SplitEntropy(left, right));
    if (!IsRightBorderClosed()) MoveRow(fTable.GetRow(row), left, right);
  }
}

// `start` are the weights of all rows below the interval, here and below.
std::vector<SplitPart> SparseSearch::MakeParts(Search& search, RunningSplit& split,
                                               const Weights& start) const {
  const std::size_t end = search.last + 1;
  if (end - search.first <= kSparseBlockRows) return {{search.first, end, 0.0}};
  Weights left(GetCategoryCount());
  const auto weightsBefore = [&](std::size_t row) {
    left = SumBetween(start, row);
    return left.data();
  };
  const auto borderAbove = [](std::size_t below) {
    return (below / kSparseBlockRows + 1) * kSparseBlockRows;
  };
  return BoundParts(split, search.first, end, borderAbove, weightsBefore, search.limit);
}

// Of a part of a block, what can hold the best split.
void SparseSearch::ScanPart(Search& search, RunningSplit& split, const SplitPart& part,
                            const Weights& start) const {
  const std::size_t boundedRows =
      std::max(kLeastBoundedRows, kBoundedRowsPerCategory * split.GetCategoryCount());
  if (part.end - part.first < 2 * boundedRows) {
    ScanRows(search, split, part, start);
    return;
  }
  Weights left = SumBetween(start, part.first);
  split.Place(left.data());
  std::size_t row = part.first;
  const auto weightsBefore = [&](std::size_t next) {
    AddRows(row, next, left);
    row = next;
    return left.data();
  };
  const auto borderAbove = [&](std::size_t below) { return below + boundedRows; };
  const std::vector<SplitPart> bounded =
      BoundParts(split, part.first, part.end, borderAbove, weightsBefore, search.limit);
  for (const SplitPart& rows : bounded) {
    if (rows.leastScore <= search.limit) ScanRows(search, split, rows, start);
  }
}

void SparseSearch::ScanRows(Search& search, RunningSplit& split, const SplitPart& part,
                            const Weights& start) const {
  const Weights before = SumBetween(start, part.first);
  split.Place(before.data());
  std::vector<double> scores;
  scores.reserve(part.end - part.first);
  for (std::size_t row = part.first; row < part.end; ++row) {
    if (!IsRightBorderClosed()) scores.push_back(split.GetScore());
    const SparseTable::Row weights = fTable.GetRow(row);
    for (std::size_t i = 0; i < weights.size; ++i) {
      split.Move(weights.categories[i], weights.weights[i]);
    }
    if (IsRightBorderClosed()) scores.push_back(split.GetScore());
  }
  const double least = *std::min_element(scores.begin(), scores.end());
  search.limit = std::min(search.limit, least + split.GetMargin());
  if (least <= search.limit) EvaluateRows(search, part, before, scores);
}

// Evaluates the splits of a part whose score is within the limit. `before` are the interval's
// weights below the part.
void SparseSearch::EvaluateRows(Search& search, const SplitPart& part, const Weights& before,
                                const std::vector<double>& scores) const {
  std::vector<double> left(search.totals.size());
  std::vector<double> right(search.totals.size());
  for (std::size_t category = 0; category < before.size(); ++category) {
    left[0] += before[category];
    left[category + 1] = before[category];
  }
  Subtract(search.totals, left, right);
  for (std::size_t row = part.first; row < part.end; ++row) {
    if (IsRightBorderClosed()) MoveRow(fTable.GetRow(row), left, right);
    if (scores[row - part.first] <= search.limit && IsCandidate(search.first, search.last, row)) {
      search.best.Offer(row, SplitEntropy(left, right));
    }
    if (!IsRightBorderClosed()) MoveRow(fTable.GetRow(row), left, right);
  }
}

}  // namespace MCBinning
