#pragma once

#include <algorithm>
#include <cfloat>
#include <cstddef>
#include <vector>

#include "algorithm/rowboundaries.h"
#include "algorithm/rowsearch.h"
#include "metadata/pass/cases.h"

namespace MCBinning {

// The boundaries of a table with a row for every distinct value of sorted cases that weigh 1 each,
// found when they are asked for: a row's first case comes after as many cases as the rows before it
// count. They are what FillDistinctBinTable() lists.
template <typename Case>
class CountedBoundaries : public RowBoundaries {
 public:
  // Keeps references to the cases and to the search of their table's rows.
  CountedBoundaries(const std::vector<Case>& cases, const RowSearch& search, std::size_t rowCount)
      : fCases(cases), fSearch(search), fRowCount(static_cast<int>(rowCount)) {}

  int GetRowCount() const override { return fRowCount; }

  double BoundaryOf(int row) const override {
    if (fSearch.IsRightBorderClosed() && row == fRowCount - 1) return DBL_MAX;
    if (!fSearch.IsRightBorderClosed() && row == 0) return -DBL_MAX;
    return Unpacked(fCases[CasesBefore(row)]).value;
  }

  int RowOf(double boundary, int first) const override {
    // The value -DBL_MAX may have a row of its own above, where -infinity has the first one.
    if (first == 0 && boundary == BoundaryOf(0)) return 0;
    const auto isBelow = [&](const Case& item) { return Unpacked(item).value < boundary; };
    const auto item = std::partition_point(fCases.begin(), fCases.end(), isBelow);
    const auto position = static_cast<std::size_t>(item - fCases.begin());
    int last = fRowCount;
    while (first < last) {
      const int middle = first + (last - first) / 2;
      if (CasesBefore(middle) < position) {
        first = middle + 1;
      } else {
        last = middle;
      }
    }
    return first;
  }

 private:
  std::size_t CasesBefore(int row) const {
    std::vector<double> sum(fSearch.GetCategoryCount() + 1);
    fSearch.SumRows(0, row - 1, sum);
    return static_cast<std::size_t>(sum[0]);
  }

  const std::vector<Case>& fCases;
  const RowSearch& fSearch;
  int fRowCount;
};

}  // namespace MCBinning
