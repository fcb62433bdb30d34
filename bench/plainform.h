#pragma once

#include <set>
#include <vector>

#include "columns.h"
#include "librarycalls.h"
#include "support/reference.h"

// The plain form of the method as the benchmarks call it.
namespace bench {

// The cases of one attribute as a bin table with one row per distinct value, and the weights
// that a split search starts with.
struct PlainTable {
  std::vector<double> boundaries;  // the lower one of row 0, then the upper one of every row
  std::vector<double> weights;     // per row, one for each class
  std::vector<double> totals;      // the total, then each class

  int GetRowCount() const { return static_cast<int>(boundaries.size()) - 1; }
};

PlainTable MakeTable(const Column& values, const Column& classes, int classCount);

// Does every search that leads to `cutPoints`: of all rows, then of the rows on both sides of
// each cut point. Returns the cut points found on the way, the same ones if all is well.
std::set<double> FindCutPointsAgain(const PlainTable& table, const std::set<double>& cutPoints);

// The same as the library's whole runs, without any files.
CutPoints RunPlainSupervised(const Columns& columns, const RunOptions& options);
CutPoints RunPlainEqualFrequency(const Columns& columns, int binCount);

}  // namespace bench
