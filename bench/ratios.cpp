// Prints how the library compares with the plain form of its method and with floors, each as a
// ratio measured in this one process. See README.md for what the lines mean.

#include <cstdio>
#include <exception>
#include <regex>
#include <string>
#include <vector>

#include "columns.h"
#include "comparison.h"
#include "memoryuse.h"
#include "runratios.h"
#include "stepratios.h"
#include "toolratios.h"

namespace {

using bench::CompareClasses;
using bench::CompareEqualFrequency;
using bench::CompareGrowth;
using bench::CompareJobs;
using bench::CompareLoading;
using bench::CompareMachine;
using bench::CompareManyAttributes;
using bench::CompareMemoryOfClasses;
using bench::ComparePartitioning;
using bench::CompareSorting;
using bench::CompareSplitSearch;
using bench::CompareSupervised;
using bench::CompareThreads;
using bench::CompareTool;
using bench::FasterThanPlain;
using bench::kMillion;
using bench::MeasureMemory;
using bench::MeasureSmallRun;
using bench::RunOptions;
using bench::Shape;
using bench::WithinFloor;

struct Line {
  std::string work;
  void (*measure)(const std::string& work);
  bool isLarge = false;  // only on request
};

// A table: as long as there are lines in it.
const std::vector<Line>& AllLines() {
  static const std::vector<Line> lines{
      {"split search, 1000000 values, 2 classes",
       [](const std::string& work) {
         CompareSplitSearch(work, {kMillion, 2, bench::kHalfSeparated, {FasterThanPlain(12.0)}});
       }},
      {"split search, 1000000 values, 2 classes, means 1 apart",
       [](const std::string& work) {
         CompareSplitSearch(work, {kMillion, 2, 1.0, {}});
       }},
      {"split search, 1000000 values, 5 classes",
       [](const std::string& work) {
         CompareSplitSearch(work, {kMillion, 5, bench::kHalfSeparated, {FasterThanPlain(6.0)}});
       }},
      {"split search, 1000000 values, 5 classes, means 1 apart",
       [](const std::string& work) {
         CompareSplitSearch(work, {kMillion, 5, 1.0, {}});
       }},
      {"split search, 100000 values, 2 classes",
       [](const std::string& work) {
         CompareSplitSearch(work, {100000, 2, bench::kHalfSeparated, {FasterThanPlain(5.0)}});
       }},
      {"split search, 1000000 values, 2 classes, pure noise",
       [](const std::string& work) {
         CompareSplitSearch(work, {kMillion, 2, bench::kNoise, {FasterThanPlain(15.0)}});
       }},
      {"partition, 1000000 values, 2 classes",
       [](const std::string& work) {
         ComparePartitioning(work, {kMillion, 2, bench::kHalfSeparated, {FasterThanPlain(12.0)}});
       }},
      {"partition, 1000000 values, 2 classes, means 1 apart",
       [](const std::string& work) {
         ComparePartitioning(work, {kMillion, 2, 1.0, {}});
       }},
      {"partition, 1000000 values, 5 classes",
       [](const std::string& work) {
         ComparePartitioning(work, {kMillion, 5, bench::kHalfSeparated, {FasterThanPlain(6.0)}});
       }},
      {"partition, 1000000 values, 5 classes, means 1 apart",
       [](const std::string& work) {
         ComparePartitioning(work, {kMillion, 5, 1.0, {}});
       }},
      {"partition, 100000 values, 2 classes",
       [](const std::string& work) {
         ComparePartitioning(work, {100000, 2, bench::kHalfSeparated, {FasterThanPlain(5.0)}});
       }},
      {"partition, 1000000 values, 2 classes, pure noise",
       [](const std::string& work) {
         ComparePartitioning(work, {kMillion, 2, bench::kNoise, {FasterThanPlain(15.0)}});
       }},
      {"sort 1000000 tuples", [](const std::string& work) { CompareSorting(work, false); }},
      {"sort 1000000 tuples, sorted already",
       [](const std::string& work) { CompareSorting(work, true); }},
      {"load an attribute of 1000000 cases, without sorting", CompareLoading},
      {"supervised run, 1000000 x 10",
       [](const std::string& work) {
         CompareSupervised(work, RunOptions(), {FasterThanPlain(5.0), WithinFloor(0.85)});
       }},
      {"supervised run by column, 1000000 x 10",
       [](const std::string& work) {
         CompareSupervised(work, {.isByColumn = true}, {WithinFloor(0.65)});
       }},
      {"supervised run, 100000 x 50, 5 classes",
       [](const std::string& work) {
         CompareSupervised(work, RunOptions(), {WithinFloor(1.7)}, {100000, 50, 5});
       }},
      {"equal-frequency run, 1000000 x 10, 20 bins",
       [](const std::string& work) {
         CompareEqualFrequency(work, {-1, 20, false}, 0.55);
       }},
      {"equal-frequency run by column, 1000000 x 10, 20 bins",
       [](const std::string& work) {
         CompareEqualFrequency(work, {-1, 20, true}, 0.4);
       }},
      {"two threads that share nothing, a job each", CompareMachine},
      {"supervised by column, 2 threads against 1, 1000000 x 10",
       [](const std::string& work) { CompareThreads(work, Shape(), 1.7); }},
      {"supervised by column, 2 threads against 1, 500000 x 40",
       [](const std::string& work) {
         CompareThreads(work, {kMillion / 2, 40, 2}, 1.8);
       }},
      {"small run, 150 x 4", MeasureSmallRun},
      {"1000 attributes x 10000 against 10 x 1000000", CompareManyAttributes},
      {"supervised run, 1000000 x 10, 1000 pre-bins",
       [](const std::string& work) {
         CompareSupervised(work, {1000, 1000}, {WithinFloor(0.9)});
       }},
      {"1000000 distinct values, 20 classes against 2",
       [](const std::string& work) { CompareClasses(work, 20, 2.0); }},
      {"1000000 distinct values, 100 classes against 2",
       [](const std::string& work) { CompareClasses(work, 100, 3.0); }},
      {"1000000 distinct values, 200 classes against 2",
       [](const std::string& work) { CompareClasses(work, 200, 5.0); }},
      {"peak memory, 1000000 distinct values, 100 classes against 2",
       [](const std::string& work) { CompareMemoryOfClasses(work, 100, 2.0); }},
      {"peak memory, 1000000 x 10", [](const std::string& work) { MeasureMemory(work, 10); }},
      {"peak memory, 1000000 x 200", [](const std::string& work) { MeasureMemory(work, 200); }},
      {"mcbin supervised, CSV of 1000000 x 11",
       [](const std::string& work) { CompareTool(work, 1); }},
      {"mcbin supervised --jobs 2, CSV of 1000000 x 11",
       [](const std::string& work) { CompareTool(work, 2); }},
      {"mcbin --jobs 2 after the first pass, 1000000 x 10",
       [](const std::string& work) { CompareJobs(work, kMillion, 10); }},
      {"mcbin --jobs 2 after the first pass, 500000 x 40",
       [](const std::string& work) { CompareJobs(work, kMillion / 2, 40); }},
      {"growth per row, 100000 to 1000000 rows",
       [](const std::string& work) { CompareGrowth(work, kMillion); }},
      {"growth per row, 100000 to 10000000 rows",
       [](const std::string& work) { CompareGrowth(work, 10 * kMillion); }, true},
  };
  return lines;
}

int PrintUsage() {
  std::fputs(
      "Usage: mcbinning_ratios [--wall] [--large] [FILTER]\n"
      "  --wall   measure wall time instead of processor time\n"
      "  --large  also what takes long: 10000000 rows\n"
      "  FILTER   only the lines that match this regular expression\n",
      stderr);
  return 2;
}

int PrintTable(const std::vector<std::string>& arguments) {
  bool isLargeWanted = false;
  std::string filter;
  for (const std::string& argument : arguments) {
    if (argument == "--wall") {
      bench::SetClock(bench::Clock::kWall);
    } else if (argument == "--large") {
      isLargeWanted = true;
    } else if (argument.rfind("-", 0) == 0 || !filter.empty()) {
      return PrintUsage();
    } else {
      filter = argument;
    }
  }
  const std::regex pattern(filter);
  bench::PrintHeading();
  for (const Line& line : AllLines()) {
    if (line.isLarge && !isLargeWanted) continue;
    if (!std::regex_search(line.work, pattern)) continue;
    try {
      line.measure(line.work);
    } catch (const std::exception& failure) {
      bench::PrintNote(line.work, std::string("not measured: ") + failure.what());
    }
  }
  return 0;
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
  const std::vector<std::string> arguments(argumentValues + 1, argumentValues + argumentCount);
  try {
    if (arguments.size() == 5 && arguments[0] == bench::kMemoryChildOption) {
      const std::size_t peak = bench::PeakMemoryOfRun(
          std::stoul(arguments[1]), std::stoi(arguments[2]), std::stoi(arguments[3]), arguments[4]);
      std::printf("%zu\n", peak);
      return 0;
    }
    return PrintTable(arguments);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "mcbinning_ratios: %s\n", failure.what());
    return 2;
  }
}
