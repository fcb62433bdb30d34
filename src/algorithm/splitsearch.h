#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "algorithm/rowsearch.h"
#include "algorithm/runningsplit.h"
#include "algorithm/splitparts.h"

namespace MCBinning {

// Finds the best split of any interval of some rows of a bin table.
//
// The plain scan evaluates every row that can be a split. The block search gives the same
// answer, bit by bit, and looks at few rows: whole blocks whose bound (see RunningSplit) is above
// the score of a split already known are skipped, of the others the rows whose bound is, along a
// line for each leaf, then those whose own score is; what is left is evaluated in row order with
// the plain scan's own arithmetic. That is exact while all weights are whole numbers and sum up to
// less than 2^52, whatever the order they are added in; and it pays for few categories. Otherwise
// every search is a plain scan.
template <typename Number>
class TableSearch : public RowSearch {
 public:
  // The table has `categoryCount` entries a row and stays the caller's. What is asked of this
  // object below lies within rows first..last (both included); it looks at no others.
  TableSearch(const Number* binTable, std::size_t categoryCount, bool rightBorderClosed, int first,
              int last);

  void SumRows(int first, int last, std::vector<double>& sum) const override;

  static constexpr std::size_t kMostCategories = 8;  // with more, every search is a plain scan

 private:
  using Weights = std::array<double, kMostCategories>;  // by category

  // An interval under search.
  struct Search {
    std::size_t first = 0;
    std::size_t last = 0;
    const std::vector<double>& totals;
    std::vector<double>& left;  // the split under evaluation
    std::vector<double>& right;
    BestSplit best;
    double limit;  // no split with a greater score is the best
  };

  struct Leaf;

  BestSplit Find(int first, int last, const std::vector<double>& totals, std::vector<double>& left,
                 std::vector<double>& right, double limit) const override;
  void SumBlocks(std::size_t first, std::size_t end);
  const Number* RowAt(std::size_t row) const { return fTable + row * GetCategoryCount(); }
  // Where the block of `blockRows` rows that holds `row` ends.
  std::size_t NextBorder(std::size_t row, std::size_t blockRows) const {
    return row + blockRows - (row - fFirstRow) % blockRows;
  }
  bool IsBoundary(std::size_t row) const final;
  void AddRows(std::size_t first, std::size_t end, Weights& weights) const;
  Weights SumBefore(std::size_t row) const;

  double NearScore(const Search& search) const;
  void Evaluate(Search& search, std::size_t row) const;
  void ScanRows(Search& search) const;
  void ScanBlocks(Search& search) const;
  template <typename UseLeaf>
  void VisitLeaves(RunningSplit& split, const SplitPart& part, const Weights& before,
                   const UseLeaf& useLeaf) const;
  void LowerLimit(Search& search, RunningSplit& split, const SplitPart& part,
                  const Weights& before) const;
  void ScanPart(Search& search, RunningSplit& split, const SplitPart& part,
                const Weights& before) const;
  void ScanLeaf(Search& search, const Leaf& leaf) const;

  const Number* fTable;
  std::size_t fFirstRow = 0;  // the blocks begin there
  std::size_t fBlockRows = 0;
  std::size_t fLeafRows = 0;
  std::size_t fSumRows = 0;        // so many lie between the sums
  std::vector<double> fBlockSums;  // the weights of the rows before; empty: every scan is plain
};

// Of weights, and of counts of cases that weigh 1 each.
using SplitSearch = TableSearch<double>;
using CountSearch = TableSearch<std::int32_t>;

}  // namespace MCBinning
