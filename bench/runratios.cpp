#include "runratios.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <future>
#include <memory>

#include "columns.h"
#include "floors.h"
#include "memoryuse.h"
#ifdef HAS_BINMODEL
#include "modelrun.h"
#endif
#include "plainform.h"
#include "support/tempdir.h"
#include "tuples.h"

namespace bench {

namespace {

// A bare radix sort of every attribute's tuples, one write and one read of all values.
Side RunFloor(const Columns& columns, const std::string& directory) {
  const auto scratch = std::make_shared<std::vector<BINDataTuple>>(columns.GetCaseCount());
  return [&columns, directory, scratch] {
    double seconds = 0.0;
    std::vector<const Column*> written{&columns.target};
    for (const Column& attribute : columns.attributes) {
      written.push_back(&attribute);
      std::vector<BINDataTuple> tuples = MakeTuples(attribute, columns.target);
      seconds += SecondsOf([&] { RadixSort(tuples, *scratch); });
    }
    std::vector<std::string> files;
    seconds += SecondsOf([&] {
      files = WriteColumnFiles(written, directory);
      ReadColumnFiles(files);
    });
    RemoveColumnFiles(files);
    return seconds;
  };
}

template <typename Plain, typename Library>
void CompareRuns(const std::string& work, const Shape& shape, const std::vector<Goal>& goals,
                 const Plain& runPlain, const Library& runLibrary) {
  const Columns columns = MixedColumns(shape.caseCount, shape.attributeCount, shape.classCount);
  const TempDir directory;
  CutPoints plain, library;
  Comparison comparison{work, {}, {}, {}, goals, {}};
  comparison.plain = [&] { return SecondsOf([&] { plain = runPlain(columns); }); };
  comparison.library = [&] {
    return SecondsOf([&] { library = runLibrary(columns, directory.Path()); });
  };
  comparison.floor = RunFloor(columns, directory.Path());
  comparison.isSameResult = [&] { return plain == library; };
  Compare(comparison);
}

}  // namespace

void CompareSupervised(const std::string& work, const RunOptions& options,
                       const std::vector<Goal>& goals, const Shape& shape) {
  CompareRuns(
      work, shape, goals,
      [&](const Columns& columns) { return RunPlainSupervised(columns, options); },
      [&](const Columns& columns, const std::string& directory) {
        return RunSupervised(columns, directory, options);
      });
}

void CompareEqualFrequency(const std::string& work, const RunOptions& options, double limit) {
  CompareRuns(
      work, Shape(), {WithinFloor(limit)},
      [&](const Columns& columns) { return RunPlainEqualFrequency(columns, options.binCount); },
      [&](const Columns& columns, const std::string& directory) {
        return RunEqualFrequency(columns, directory, options);
      });
}

// A run over few records and many attributes takes the place of the library, one over as many
// values the other way round that of the floor.
void CompareManyAttributes(const std::string& work) {
  const Columns wide = MixedColumns(10000, 1000, 2);
  const Columns narrow = MixedColumns(kMillion, 10, 2);
  const TempDir directory;
  const auto run = [&](const Columns& columns) {
    return SecondsOf([&] { RunSupervised(columns, directory.Path(), {.isByColumn = true}); });
  };
  Comparison comparison{work, {}, {}, {}, {{Goal::Kind::kWithinFloor, 1.2, "x"}}, {}};
  comparison.library = [&] { return run(wide); };
  comparison.floor = [&] { return run(narrow); };
  Compare(comparison);
}

// From the making of the algorithm object to its end, the best of many.
void MeasureSmallRun(const std::string& work) {
  constexpr double kLimit = 200.0;
  const Columns columns = MixedColumns(150, 4, 3);
  const TempDir directory;
  const double best = BestSecondsOf([&] {
    double seconds = 1.0;
    for (int i = 0; i < 100; ++i) {
      seconds = std::min(
          seconds, SecondsOf([&] { RunSupervised(columns, directory.Path(), RunOptions()); }));
    }
    return seconds;
  });
  char text[32];
  std::snprintf(text, sizeof text, "%.0f us", 1e6 * best);
  PrintLine(work, text, "<= 200 us", 1e6 * best <= kLimit);
}

// In wall time: one thread takes the place of the plain form.
void CompareThreads([[maybe_unused]] const std::string& work, [[maybe_unused]] const Shape& shape,
                    [[maybe_unused]] double limit) {
#ifdef HAS_BINMODEL
  const Columns columns = MixedColumns(shape.caseCount, shape.attributeCount, shape.classCount);
  const TempDir directory;
  Comparison comparison{work, {}, {}, {}, {FasterThanPlain(limit)}, {}};
  comparison.plain = [&] { return SecondsOfModelRun(columns, directory.Path(), 1); };
  comparison.library = [&] { return SecondsOfModelRun(columns, directory.Path(), 2); };
  Compare(comparison);
#endif
}

// Two jobs that share nothing, one after the other and side by side: what the machine itself lets
// two threads gain while it is measured.
void CompareMachine(const std::string& work) {
  const Columns columns[] = {MixedColumns(kMillion, 5, 2), MixedColumns(kMillion, 5, 2)};
  const TempDir directories[2];
  const auto run = [&](int job) {
    RunSupervised(columns[job], directories[job].Path(), {.isByColumn = true});
  };
  Comparison comparison{work, {}, {}, {}, {}, {}};
  comparison.plain = [&] {
    return WallSecondsOf([&] {
      run(0);
      run(1);
    });
  };
  comparison.library = [&] {
    return WallSecondsOf([&] {
      std::future<void> other = std::async(std::launch::async, run, 1);
      run(0);
      other.get();
    });
  };
  Compare(comparison);
}

void MeasureMemory(const std::string& work, int attributeCount) {
  const TempDir directory;
  constexpr double kMebibyte = 1024.0 * 1024.0;
  const double limit = 64.0 * static_cast<double>(kMillion) + 64.0 * kMebibyte;
  const auto peak =
      static_cast<double>(PeakMemoryInChild(kMillion, attributeCount, 2, directory.Path()));
  const auto inMebibytes = [](double bytes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.0f MiB", bytes / kMebibyte);
    return std::string(text);
  };
  PrintLine(work, inMebibytes(peak), "<= " + inMebibytes(limit), peak <= limit);
}

// A run over many classes takes the place of the library, one over two that of the floor.
void CompareClasses(const std::string& work, int classCount, double limit) {
  const Columns two = MixedColumns(kMillion, 1, 2);
  const Columns many = MixedColumns(kMillion, 1, classCount);
  const TempDir directory;
  const auto run = [&](const Columns& columns) {
    return SecondsOf([&] { RunSupervised(columns, directory.Path(), RunOptions()); });
  };
  Comparison comparison{work, {}, {}, {}, {{Goal::Kind::kWithinFloor, limit, "x"}}, {}};
  comparison.library = [&] { return run(many); };
  comparison.floor = [&] { return run(two); };
  Compare(comparison);
}

void CompareMemoryOfClasses(const std::string& work, int classCount, double limit) {
  const TempDir directory;
  const auto peakOf = [&](int classes) {
    return static_cast<double>(PeakMemoryInChild(kMillion, 1, classes, directory.Path()));
  };
  const double ratio = peakOf(classCount) / peakOf(2);
  const auto text = [](const char* format, double number) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, format, number);
    return std::string(buffer);
  };
  PrintLine(work, text("%.2f x", ratio), text("<= %.2f x", limit), ratio <= limit);
}

// Time per row: the runs over few and over many rows take the places of floor and library.
void CompareGrowth(const std::string& work, std::size_t manyRows) {
  constexpr std::size_t kFewRows = 100000;
  // Fresh memory for every run: what the allocator keeps from one to the next depends on the
  // sizes, and would favour few rows.
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
  const Columns few = MixedColumns(kFewRows, 2, 2);
  const Columns many = MixedColumns(manyRows, 2, 2);
  const TempDir directory;
  const auto secondsPerMillionRows = [&](const Columns& columns) {
    const double seconds =
        SecondsOf([&] { RunSupervised(columns, directory.Path(), RunOptions()); });
    return seconds * static_cast<double>(kMillion) / static_cast<double>(columns.GetCaseCount());
  };
  Comparison comparison{work, {}, {}, {}, {{Goal::Kind::kWithinFloor, 1.5, "x"}}, {}};
  comparison.library = [&] { return secondsPerMillionRows(many); };
  comparison.floor = [&] { return secondsPerMillionRows(few); };
  Compare(comparison);
}

}  // namespace bench
