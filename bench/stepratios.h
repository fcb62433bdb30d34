#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "comparison.h"

namespace bench {

// Single steps of a run against the plain form and against floors: a line each, named `work`.

struct SearchCase {
  std::size_t valueCount;
  int classCount;
  double separation;  // in standard deviations
  std::vector<Goal> goals;
};

// One search for the best split of a bin table.
void CompareSplitSearch(const std::string& work, const SearchCase& searchCase);

// All searches that one attribute takes, those without an accepted cut included.
void ComparePartitioning(const std::string& work, const SearchCase& searchCase);

void CompareSorting(const std::string& work, bool isSorted);

// Reading an attribute of a data pass, without sorting.
void CompareLoading(const std::string& work);

}  // namespace bench
