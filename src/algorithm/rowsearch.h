#pragma once

#include <cstddef>
#include <limits>
#include <vector>

namespace MCBinning {

// Below 2^52, sums of whole numbers are exact in whatever order they are added, with room to spare.
inline constexpr double kLeastInexactSum = 4503599627370496.0;

// The split with the least entropy of those seen so far, in row order.
class BestSplit {
 public:
  // Among equal ones the first stays. Whether this one is the best now.
  bool Offer(std::size_t row, double entropy) {
    if (fHasRow && !(fEntropy > entropy)) return false;
    fRow = row;
    fEntropy = entropy;
    fHasRow = true;
    return true;
  }

  bool HasRow() const { return fHasRow; }

  // 0 without any.
  std::size_t GetRow() const { return fRow; }

 private:
  std::size_t fRow = 0;
  double fEntropy = 0.0;
  bool fHasRow = false;
};

// Sums the rows of a bin table, and finds the best split of any interval of them.
class RowSearch {
 public:
  virtual ~RowSearch() = default;

  std::size_t GetCategoryCount() const { return fCategoryCount; }
  bool IsRightBorderClosed() const { return fRightBorderClosed; }

  // The weights of rows first..last (both included): the total, then each category.
  virtual void SumRows(int first, int last, std::vector<double>& sum) const = 0;

  static constexpr int kNoRow = -1;

  // See BINAlgorithm::FindBestCutPoint. On entry `left` holds zeros, `right` the sum. A best split
  // that leaves more than `mostEntropy` need not be found: the answer is it, one that leaves no
  // less, or kNoRow, which is also the answer then where no row can be a split.
  int FindBest(int first, int last, std::vector<double>& left, std::vector<double>& right,
               double mostEntropy = std::numeric_limits<double>::infinity()) const;

 protected:
  RowSearch(std::size_t categoryCount, bool rightBorderClosed)
      : fCategoryCount(categoryCount), fRightBorderClosed(rightBorderClosed) {}

  // Whether a row of an interval can be its best split.
  bool IsCandidate(std::size_t first, std::size_t last, std::size_t row) const {
    return (row > first && IsBoundary(row - 1)) || (row < last && IsBoundary(row));
  }

 private:
  // Whether a cut between a row and the next can be worth anything: not when both hold weight in
  // one and the same category and in no other.
  virtual bool IsBoundary(std::size_t row) const = 0;

  // The best split, if any row can be one; leaves anything in `left` and `right`. One whose score
  // (see RunningSplit) is greater than `limit` need not be found.
  virtual BestSplit Find(int first, int last, const std::vector<double>& totals,
                         std::vector<double>& left, std::vector<double>& right,
                         double limit) const = 0;

  std::size_t fCategoryCount;
  bool fRightBorderClosed;
};

inline void Subtract(const std::vector<double>& totals, const std::vector<double>& part,
                     std::vector<double>& difference) {
  for (std::size_t i = 0; i < totals.size(); ++i) difference[i] = totals[i] - part[i];
}

}  // namespace MCBinning
