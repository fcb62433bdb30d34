// Prints how the library compares with the plain form of its method and with floors, each as a
// ratio measured in this one process. See README.md for what the lines mean.

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "columns.h"
#include "comparison.h"
#include "floors.h"
#include "librarycalls.h"
#include "memoryuse.h"
#ifdef HAS_BINMODEL
#include "modelrun.h"
#endif
#include "plainform.h"
#include "support/tempdir.h"
#include "toolrun.h"
#include "tuples.h"

namespace {

using bench::Columns;
using bench::Comparison;
using bench::CutPoints;
using bench::Goal;
using bench::RunOptions;
using bench::SecondsOf;
using bench::Side;

constexpr std::size_t kMillion = 1000000;

Goal FasterThanPlain(double limit) { return {Goal::Kind::kFasterThanPlain, limit, "x faster"}; }
Goal WithinFloor(double limit) { return {Goal::Kind::kWithinFloor, limit, "x floor"}; }

// Split search.

struct SearchCase {
  std::size_t valueCount;
  int classCount;
  double separation;  // in standard deviations
  std::vector<Goal> goals;
};

bench::PlainTable MakeTable(const SearchCase& searchCase) {
  const bench::Column classes = bench::Classes(searchCase.valueCount, searchCase.classCount, 1);
  return bench::MakeTable(bench::Normals(classes, searchCase.separation, 2), classes,
                          searchCase.classCount);
}

void CompareSplitSearch(const std::string& work, const SearchCase& searchCase) {
  const bench::PlainTable table = MakeTable(searchCase);
  const bench::Splitter splitter(searchCase.classCount);
  struct Found {
    int row = -1;
    std::vector<double> left, right;
  };
  const auto start = [&](Found& found) {
    found.left.assign(table.totals.size(), 0.0);
    found.right = table.totals;
  };

  Found plain, library;
  Comparison comparison{work, {}, {}, {}, searchCase.goals, {}};
  comparison.plain = [&] {
    start(plain);
    return SecondsOf([&] {
      plain.row = reference::BestSplit(table.weights, 0, table.GetRowCount() - 1, true, plain.left,
                                       plain.right);
    });
  };
  comparison.library = [&] {
    start(library);
    return SecondsOf(
        [&] { library.row = splitter.FindBest(table.weights, library.left, library.right); });
  };
  comparison.isSameResult = [&] {
    return plain.row == library.row && plain.left == library.left && plain.right == library.right;
  };
  bench::Compare(comparison);
}

// All searches that one attribute takes, those without an accepted cut included.
void ComparePartitioning(const std::string& work, const SearchCase& searchCase) {
  const bench::PlainTable table = MakeTable(searchCase);
  const std::vector<double> upperBoundaries(table.boundaries.begin() + 1, table.boundaries.end());
  const bench::Splitter splitter(searchCase.classCount);
  std::set<double> library = splitter.FindCutPoints(upperBoundaries, table.weights);
  std::set<double> plain;
  Comparison comparison{work, {}, {}, {}, searchCase.goals, {}};
  comparison.plain = [&] {
    return SecondsOf([&] { plain = bench::FindCutPointsAgain(table, library); });
  };
  comparison.library = [&] {
    return SecondsOf([&] { library = splitter.FindCutPoints(upperBoundaries, table.weights); });
  };
  comparison.isSameResult = [&] { return plain == library; };
  bench::Compare(comparison);
}

// Sorting and loading.

// Times `sort` on cases in their first order, not the copy that brings it back.
template <typename Sort>
Side SortSide(const std::vector<BINDataTuple>& unsorted, std::vector<BINDataTuple>& tuples,
              const Sort& sort) {
  return [&unsorted, &tuples, sort] {
    std::copy(unsorted.begin(), unsorted.end(), tuples.begin());
    return SecondsOf([&] { sort(tuples); });
  };
}

void CompareSorting(const std::string& work, bool isSorted) {
  const bench::Column classes = bench::Classes(kMillion, 2, 1);
  bench::Column values = bench::Normals(classes, bench::kHalfSeparated, 2);
  if (isSorted) values = bench::Sorted(std::move(values));
  const std::vector<BINDataTuple> unsorted = bench::MakeTuples(values, classes);
  std::vector<BINDataTuple> tuples = unsorted;
  std::vector<BINDataTuple> scratch = unsorted;
  bench::Sorter sorter;

  Comparison comparison{work, {}, {}, {}, {WithinFloor(isSorted ? 3.0 : 1.3)}, {}};
  comparison.plain = SortSide(unsorted, tuples, [](std::vector<BINDataTuple>& cases) {
    std::stable_sort(cases.begin(), cases.end());
  });
  comparison.library =
      SortSide(unsorted, tuples, [&](std::vector<BINDataTuple>& cases) { sorter.Sort(cases); });
  if (isSorted) {
    volatile std::uint64_t kept = 0;
    comparison.floor = SortSide(unsorted, tuples, [&](std::vector<BINDataTuple>& cases) {
      kept = bench::ReadOnce(cases.data(), cases.size() * sizeof(BINDataTuple));
    });
    bench::Compare(comparison);
    return;
  }
  comparison.floor = SortSide(unsorted, tuples, [&](std::vector<BINDataTuple>& cases) {
    bench::RadixSort(cases, scratch);
  });
  bench::Compare(comparison);
}

void CompareLoading(const std::string& work) {
  Columns columns = bench::MixedColumns(kMillion, 1, 2);
  columns.weights.assign(kMillion, 2.0);
  const TempDir directory;
  bench::DataPass pass(columns, directory.Path());
  pass.Run();
  const std::vector<double> from(3 * kMillion, 1.0);
  std::vector<double> to(3 * kMillion, 2.0);

  Comparison comparison{work, {}, {}, {}, {WithinFloor(4.0)}, {}};
  comparison.library = [&] { return SecondsOf([&] { pass.ReadAttribute(0); }); };
  comparison.floor = [&] {
    return SecondsOf([&] {
      std::memcpy(to.data(), from.data(), from.size() * sizeof(double));
      volatile const double kept = to.back();
      static_cast<void>(kept);
    });
  };
  bench::Compare(comparison);
}

// Whole runs.

// A bare radix sort of every attribute's tuples, one write and one read of all values.
Side RunFloor(const Columns& columns, const std::string& directory) {
  const auto scratch = std::make_shared<std::vector<BINDataTuple>>(columns.GetCaseCount());
  return [&columns, directory, scratch] {
    double seconds = 0.0;
    std::vector<const bench::Column*> written{&columns.target};
    for (const bench::Column& attribute : columns.attributes) {
      written.push_back(&attribute);
      std::vector<BINDataTuple> tuples = bench::MakeTuples(attribute, columns.target);
      seconds += SecondsOf([&] { bench::RadixSort(tuples, *scratch); });
    }
    std::vector<std::string> files;
    seconds += SecondsOf([&] {
      files = bench::WriteColumnFiles(written, directory);
      bench::ReadColumnFiles(files);
    });
    bench::RemoveColumnFiles(files);
    return seconds;
  };
}

// Of the data of a whole run.
struct Shape {
  std::size_t caseCount = kMillion;
  int attributeCount = 10;
  int classCount = 2;
};

template <typename Plain, typename Library>
void CompareRuns(const std::string& work, const Shape& shape, const std::vector<Goal>& goals,
                 const Plain& runPlain, const Library& runLibrary) {
  const Columns columns =
      bench::MixedColumns(shape.caseCount, shape.attributeCount, shape.classCount);
  const TempDir directory;
  CutPoints plain, library;
  Comparison comparison{work, {}, {}, {}, goals, {}};
  comparison.plain = [&] { return SecondsOf([&] { plain = runPlain(columns); }); };
  comparison.library = [&] {
    return SecondsOf([&] { library = runLibrary(columns, directory.Path()); });
  };
  comparison.floor = RunFloor(columns, directory.Path());
  comparison.isSameResult = [&] { return plain == library; };
  bench::Compare(comparison);
}

void CompareSupervised(const std::string& work, const RunOptions& options,
                       const std::vector<Goal>& goals, const Shape& shape = {}) {
  CompareRuns(
      work, shape, goals,
      [&](const Columns& columns) { return bench::RunPlainSupervised(columns, options); },
      [&](const Columns& columns, const std::string& directory) {
        return bench::RunSupervised(columns, directory, options);
      });
}

void CompareEqualFrequency(const std::string& work, const RunOptions& options, double limit) {
  CompareRuns(
      work, Shape(), {WithinFloor(limit)},
      [&](const Columns& columns) {
        return bench::RunPlainEqualFrequency(columns, options.binCount);
      },
      [&](const Columns& columns, const std::string& directory) {
        return bench::RunEqualFrequency(columns, directory, options);
      });
}

// A run over few records and many attributes takes the place of the library, one over as many
// values the other way round that of the floor.
void CompareManyAttributes(const std::string& work) {
  const Columns wide = bench::MixedColumns(10000, 1000, 2);
  const Columns narrow = bench::MixedColumns(kMillion, 10, 2);
  const TempDir directory;
  const auto run = [&](const Columns& columns) {
    return SecondsOf(
        [&] { bench::RunSupervised(columns, directory.Path(), {.isByColumn = true}); });
  };
  Comparison comparison{work, {}, {}, {}, {{Goal::Kind::kWithinFloor, 1.2, "x"}}, {}};
  comparison.library = [&] { return run(wide); };
  comparison.floor = [&] { return run(narrow); };
  bench::Compare(comparison);
}

// From the making of the algorithm object to its end, the best of many.
void MeasureSmallRun(const std::string& work) {
  constexpr double kLimit = 200.0;
  const Columns columns = bench::MixedColumns(150, 4, 3);
  const TempDir directory;
  double best = 1.0;
  for (int i = 0; i < 1000; ++i) {
    best = std::min(
        best, SecondsOf([&] { bench::RunSupervised(columns, directory.Path(), RunOptions()); }));
  }
  char text[32];
  std::snprintf(text, sizeof text, "%.0f us", 1e6 * best);
  bench::PrintLine(work, text, "<= 200 us", 1e6 * best <= kLimit);
}

// In wall time: one thread takes the place of the plain form.
void CompareThreads([[maybe_unused]] const std::string& work, [[maybe_unused]] const Shape& shape,
                    [[maybe_unused]] double limit) {
#ifdef HAS_BINMODEL
  const Columns columns =
      bench::MixedColumns(shape.caseCount, shape.attributeCount, shape.classCount);
  const TempDir directory;
  constexpr int kRounds = 8;  // in wall time all that disturbs a core counts
  Comparison comparison{work, {}, {}, {}, {FasterThanPlain(limit)}, {}, kRounds};
  comparison.plain = [&] { return bench::SecondsOfModelRun(columns, directory.Path(), 1); };
  comparison.library = [&] { return bench::SecondsOfModelRun(columns, directory.Path(), 2); };
  bench::Compare(comparison);
#endif
}

// The rest.

void MeasureMemory(const std::string& work, int attributeCount) {
  const TempDir directory;
  constexpr double kMebibyte = 1024.0 * 1024.0;
  const double limit = 64.0 * static_cast<double>(kMillion) + 64.0 * kMebibyte;
  const auto peak =
      static_cast<double>(bench::PeakMemoryInChild(kMillion, attributeCount, 2, directory.Path()));
  const auto inMebibytes = [](double bytes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.0f MiB", bytes / kMebibyte);
    return std::string(text);
  };
  bench::PrintLine(work, inMebibytes(peak), "<= " + inMebibytes(limit), peak <= limit);
}

// A run over many classes takes the place of the library, one over two that of the floor.
void CompareClasses(const std::string& work, int classCount, double limit) {
  const Columns two = bench::MixedColumns(kMillion, 1, 2);
  const Columns many = bench::MixedColumns(kMillion, 1, classCount);
  const TempDir directory;
  const auto run = [&](const Columns& columns) {
    return SecondsOf([&] { bench::RunSupervised(columns, directory.Path(), RunOptions()); });
  };
  Comparison comparison{work, {}, {}, {}, {{Goal::Kind::kWithinFloor, limit, "x"}}, {}};
  comparison.library = [&] { return run(many); };
  comparison.floor = [&] { return run(two); };
  bench::Compare(comparison);
}

void CompareMemoryOfClasses(const std::string& work, int classCount, double limit) {
  const TempDir directory;
  const auto peakOf = [&](int classes) {
    return static_cast<double>(bench::PeakMemoryInChild(kMillion, 1, classes, directory.Path()));
  };
  const double ratio = peakOf(classCount) / peakOf(2);
  const auto text = [](const char* format, double number) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, format, number);
    return std::string(buffer);
  };
  bench::PrintLine(work, text("%.2f x", ratio), text("<= %.2f x", limit), ratio <= limit);
}

void CompareTool(const std::string& work) {
  const std::string tool = bench::FindTool();
  if (tool.empty()) {
    bench::PrintNote(work, "not measured: mcbin has not been built");
    return;
  }
  const TempDir directory;
  const std::string file = directory.Path() + "/data.csv";
  bench::WriteCsv(bench::MixedColumns(kMillion, 10, 2), file);
  Comparison comparison{work, {}, {}, {}, {WithinFloor(4.0)}, {}};
  comparison.library = [&] {
    return SecondsOf([&] {
      bench::RunProgram({tool, "supervised", "--target", "class", "--quiet", "--temp-dir",
                         directory.Path(), file},
                        "/dev/null");
    });
  };
  comparison.floor = [&] {
    return SecondsOf([&] {
      volatile const double kept = bench::ConvertCsv(file);
      static_cast<void>(kept);
    });
  };
  bench::Compare(comparison);
}

// The part of the tool's run that several jobs share, in wall time: one job takes the place of
// the plain form.
void CompareJobs(const std::string& work, std::size_t rowCount, int attributeCount) {
  const std::string tool = bench::FindTool();
  if (tool.empty() || std::thread::hardware_concurrency() < 2) {
    bench::PrintNote(work, "not measured: needs mcbin and two cores");
    return;
  }
  const TempDir data;
  const TempDir directory;
  const std::string file = data.Path() + "/data.csv";
  bench::WriteCsv(bench::MixedColumns(rowCount, attributeCount, 2), file);
  const auto run = [&](const char* jobs) {
    return bench::RunFromFirstFile(
        {tool, "supervised", "--target", "class", "--prebin-above", "0", "--jobs", jobs, "--quiet",
         "--temp-dir", directory.Path(), file},
        directory.Path());
  };
  constexpr int kRounds = 8;  // in wall time all that disturbs a core counts
  Comparison comparison{work, {}, {}, {}, {FasterThanPlain(1.6)}, {}, kRounds};
  comparison.plain = [&] { return run("1"); };
  comparison.library = [&] { return run("2"); };
  bench::Compare(comparison);
}

// Time per row: the runs over few and over many rows take the places of floor and library.
void CompareGrowth(const std::string& work, std::size_t manyRows) {
  constexpr std::size_t kFewRows = 100000;
  // Fresh memory for every run: what the allocator keeps from one to the next depends on the
  // sizes, and would favour few rows.
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
  const Columns few = bench::MixedColumns(kFewRows, 2, 2);
  const Columns many = bench::MixedColumns(manyRows, 2, 2);
  const TempDir directory;
  const auto secondsPerMillionRows = [&](const Columns& columns) {
    const double seconds =
        SecondsOf([&] { bench::RunSupervised(columns, directory.Path(), RunOptions()); });
    return seconds * static_cast<double>(kMillion) / static_cast<double>(columns.GetCaseCount());
  };
  Comparison comparison{work, {}, {}, {}, {{Goal::Kind::kWithinFloor, 1.5, "x"}}, {}};
  comparison.library = [&] { return secondsPerMillionRows(many); };
  comparison.floor = [&] { return secondsPerMillionRows(few); };
  bench::Compare(comparison);
}

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
      {"mcbin supervised, CSV of 1000000 x 11", CompareTool},
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
