#pragma once

#include <cstddef>
#include <vector>

#include "algorithm/rowsearch.h"
#include "algorithm/sparsetable.h"
#include "algorithm/splitparts.h"

namespace MCBinning {

// Finds splits among the rows of a sparse table, for many categories.
//
// The plain scan takes the logarithm of every category's weight at every row. Here the score of a
// split (see RunningSplit), which is nearly its entropy, is carried from row to row, where few
// categories change; and blocks of rows whose lower bound is above a score already known are
// skipped. Only splits whose score is within a margin of the least are evaluated, with the plain
// scan's own arithmetic and in row order: the answer is the same, bit by bit. That is exact while
// all weights are whole numbers and sum up to less than 2^52. Otherwise every search is a plain
// scan.
class SparseSearch : public RowSearch {
 public:
  // Keeps a reference to the table.
  SparseSearch(const SparseTable& table, bool rightBorderClosed);

  void SumRows(int first, int last, std::vector<double>& sum) const override;

 private:
  using Weights = std::vector<double>;  // by category

  struct Search {
    std::size_t first;
    std::size_t last;
    const std::vector<double>& totals;
    double limit;  // no split with a greater score is the best
    BestSplit best;
  };

  BestSplit Find(int first, int last, const std::vector<double>& totals, std::vector<double>& left,
                 std::vector<double>& right, double limit) const override;
  void SumBlocks();
  void AddRows(std::size_t first, std::size_t end, Weights& weights) const;
  Weights SumBefore(std::size_t row) const;
  Weights SumBetween(const Weights& start, std::size_t row) const;
  bool IsBoundary(std::size_t row) const final;

  void ScanPlainly(Search& search, std::vector<double>& left, std::vector<double>& right) const;
  std::vector<SplitPart> MakeParts(Search& search, RunningSplit& split, const Weights& start) const;
  void ScanRows(Search& search, RunningSplit& split, const SplitPart& part,
                const Weights& start) const;
  void ScanPart(Search& search, RunningSplit& split, const SplitPart& part,
                const Weights& start) const;
  void EvaluateRows(Search& search, const SplitPart& part, const Weights& before,
                    const std::vector<double>& scores) const;

  const SparseTable& fTable;
  std::vector<double> fBlockSums;  // the weights of all rows before each block; empty: plain only
};

}  // namespace MCBinning
