#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/mcstatus.h"

class BINDataSet;

namespace MCBinning {

// A bin table of one row per distinct value that keeps only the categories with weight: of many
// categories, a row has few.
//
// Needs 12 bytes a row and 9 for each of its categories.
class SparseTable {
 public:
  // The categories of a row, ascending, and their weights.
  struct Row {
    const std::uint8_t* categories;
    const double* weights;
    std::size_t size;
  };

  explicit SparseTable(std::size_t categoryCount) : fCategoryCount(categoryCount), fEnds{0} {}

  // Fills an empty table with the cases that a data set has loaded, at least one: it is then what
  // FillDistinctBinTable() makes, and the status is the same.
  MCStatus Fill(BINDataSet& dataSet, bool rightBorderClosed);

  // Adds an empty row above the others.
  void AddRow(double boundary);

  // Adds weight, never 0, to the last row.
  void AddWeight(std::size_t category, double weight);

  // One a row, as with FillDistinctBinTable().
  const std::vector<double>& GetBoundaries() const { return fBoundaries; }

  std::size_t GetCategoryCount() const { return fCategoryCount; }
  std::size_t GetRowCount() const { return fBoundaries.size(); }
  Row GetRow(std::size_t row) const { return GetRows(row, row + 1); }

  // Of the rows first .. end-1 together, row by row.
  Row GetRows(std::size_t first, std::size_t end) const {
    const std::size_t begin = fEnds[first];
    return {fCategories.data() + begin, fWeights.data() + begin, fEnds[end] - begin};
  }

 private:
  template <typename Case>
  void AddCases(const Case* first, const Case* last);

  std::size_t fCategoryCount;
  std::vector<double> fBoundaries;
  std::vector<std::uint32_t> fEnds;  // row r has what lies between entry r and r + 1
  std::vector<std::uint8_t> fCategories;
  std::vector<double> fWeights;
};

}  // namespace MCBinning
