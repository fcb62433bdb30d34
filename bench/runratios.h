#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "comparison.h"
#include "librarycalls.h"

namespace bench {

// Whole runs against the plain form, against floors and against other runs: a line each, named
// `work`.

// Of the data of a whole run.
struct Shape {
  std::size_t caseCount = kMillion;
  int attributeCount = 10;
  int classCount = 2;
};

void CompareSupervised(const std::string& work, const RunOptions& options,
                       const std::vector<Goal>& goals, const Shape& shape = {});
void CompareEqualFrequency(const std::string& work, const RunOptions& options, double limit);

// A run over few records and many attributes against one over as many values the other way round.
void CompareManyAttributes(const std::string& work);

// From the making of the algorithm object to its end, the best of many.
void MeasureSmallRun(const std::string& work);

// In wall time, without a target: how much faster two threads do two jobs that share nothing than
// one does, on this machine at this time.
void CompareMachine(const std::string& work);

// Two threads against one, in wall time; nothing without the library of bins.
void CompareThreads(const std::string& work, const Shape& shape, double limit);

// Against two classes: time, and peak memory.
void CompareClasses(const std::string& work, int classCount, double limit);
void CompareMemoryOfClasses(const std::string& work, int classCount, double limit);

void MeasureMemory(const std::string& work, int attributeCount);

// Time per row against that of few rows.
void CompareGrowth(const std::string& work, std::size_t manyRows);

}  // namespace bench
