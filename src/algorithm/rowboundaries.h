#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace MCBinning {

// Where the rows of a bin table can be cut: each row has a boundary, and they ascend.
class RowBoundaries {
 public:
  virtual ~RowBoundaries() = default;

  virtual int GetRowCount() const = 0;
  virtual double BoundaryOf(int row) const = 0;

  // The first row from `first` on that has this boundary, or their number.
  virtual int RowOf(double boundary, int first) const = 0;
};

// Boundaries that are at hand.
class ListedBoundaries : public RowBoundaries {
 public:
  // Keeps a reference; entry r is row r's.
  explicit ListedBoundaries(const std::vector<double>& boundaries) : fBoundaries(boundaries) {}

  int GetRowCount() const override { return static_cast<int>(fBoundaries.size()); }
  double BoundaryOf(int row) const override { return fBoundaries[static_cast<std::size_t>(row)]; }
  int RowOf(double boundary, int first) const override {
    const auto row = std::find(fBoundaries.begin() + first, fBoundaries.end(), boundary);
    return static_cast<int>(row - fBoundaries.begin());
  }

 private:
  const std::vector<double>& fBoundaries;
};

}  // namespace MCBinning
