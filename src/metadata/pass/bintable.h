#pragma once

#include <algorithm>
#include <cfloat>
#include <cstddef>
#include <vector>

#include "metadata/pass/cases.h"

namespace MCBinning {

// A bin table of one row per distinct value, with the rows' boundaries.
struct DistinctBinTable {
  std::vector<double> boundaries;
  std::vector<double> weights;
};

// Whether rows of one distinct value each can have boundaries, the last or the first of which is
// the largest double or its negative: not when the last value lies above those doubles, or on the
// largest one with the right border open. Nothing lies above the last value, and a NaN comes last.
inline bool HasBoundaries(double lastValue, bool rightBorderClosed) {
  return rightBorderClosed ? lastValue <= DBL_MAX : lastValue < DBL_MAX;
}

// Sums up the weights of sorted cases by bin and target category, as BINDataSet::CreateBinTable()
// describes it. False when the cut points do not fit the cases. Requires that every target lies
// below `categoryCount`.
template <typename Cases>
bool FillBinTable(const Cases& cases, const std::vector<double>& cutPoints, bool rightBorderClosed,
                  std::size_t categoryCount, std::vector<double>& table) {
  const double* upper = cutPoints.data() + 1;
  const double* const beyondLast = cutPoints.data() + cutPoints.size();
  double* bin = table.data();
  // Written so that a NaN closes every bin.
  const auto isAbove = [&](double value) {
    return rightBorderClosed ? !(value <= *upper) : !(value < *upper);
  };
  for (const auto& stored : cases) {
    const auto& item = Unpacked(stored);
    while (isAbove(item.value)) {
      bin += categoryCount;
      if (++upper == beyondLast) return false;
    }
    bin[item.target] += item.weight;
  }
  if (upper + 1 == beyondLast) return true;
  std::fill_n(bin, categoryCount, 0.0);  // only closed bins are kept
  return false;
}

// The bin table with a row for every distinct value, and one boundary per row: the row's own value,
// but the largest finite double for the last one with the right border closed, the most negative
// one for the first otherwise. False, and nothing filled, without HasBoundaries(). Requires sorted
// cases, one at least, every target below `categoryCount`.
template <typename Cases>
bool FillDistinctBinTable(const Cases& cases, std::size_t distinctValues, bool rightBorderClosed,
                          std::size_t categoryCount, DistinctBinTable& table) {
  if (!HasBoundaries(Unpacked(cases.back()).value, rightBorderClosed)) return false;
  table.boundaries.assign(distinctValues, 0.0);
  table.weights.assign(distinctValues * categoryCount, 0.0);
  double* boundary = table.boundaries.data();
  double* bin = table.weights.data();
  *boundary = Unpacked(cases.front()).value;
  const auto* previous = &cases.front();
  for (const auto& stored : cases) {
    const auto& item = Unpacked(stored);
    if (!HaveSameValue(stored, *previous)) {
      *++boundary = item.value;
      bin += categoryCount;
      previous = &stored;
    }
    bin[item.target] += item.weight;
  }
  if (rightBorderClosed) {
    table.boundaries.back() = DBL_MAX;
  } else {
    table.boundaries.front() = -DBL_MAX;
  }
  return true;
}

}  // namespace MCBinning
