#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "algorithm/runningsplit.h"

namespace MCBinning {

// Some rows of an interval.
struct SplitPart {
  std::size_t first;
  std::size_t end;
  double leastScore;  // no split there has a lower one
};

// Divides rows first .. end-1 at the borders of blocks, bounds the parts, and lowers `limit` to
// what the best split scores at most: as much as those between the parts. (A split between two rows
// of one and the same category is not evaluated, but one end of its run is, and no worse: so any
// split limits the best one.)
//
// `borderAbove` takes a row and answers where its block ends, `weightsBefore` the interval's
// weights below a row.
template <typename BorderAbove, typename WeightsBefore>
std::vector<SplitPart> BoundParts(RunningSplit& split, std::size_t first, std::size_t end,
                                  const BorderAbove& borderAbove,
                                  const WeightsBefore& weightsBefore, double& limit) {
  std::vector<SplitPart> parts;
  while (first < end) {
    const std::size_t next = std::min(borderAbove(first), end);
    const double least = split.Advance(weightsBefore(next));
    parts.push_back({first, next, least});
    limit = std::min(limit, split.GetScore() + split.GetMargin());
    first = next;
  }
  return parts;
}

}  // namespace MCBinning
