// Equal-frequency cuts of sorted cases, and whole runs of both algorithms over data in memory.

#include <benchmark/benchmark.h>

#include <vector>

#include "columns.h"
#include "itemrate.h"
#include "librarycalls.h"
#include "plainform.h"
#include "support/tempdir.h"
#include "tuples.h"

namespace {

constexpr bench::RunOptions kEveryValue;
constexpr bench::RunOptions kPreBinned{1000, 1000};

bench::Columns Data(const benchmark::State& state) {
  return bench::MixedColumns(static_cast<std::size_t>(state.range(0)),
                             static_cast<int>(state.range(1)), 2);
}

void BM_EqualFrequencyCut(benchmark::State& state) {
  const bench::Column classes = bench::Classes(static_cast<std::size_t>(state.range(0)), 2, 1);
  std::vector<BINDataTuple> tuples =
      bench::MakeTuples(bench::Sorted(bench::Normals(classes, bench::kHalfSeparated, 2)), classes);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        bench::CutEqualFrequency(tuples, static_cast<int>(state.range(1))).data());
  }
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_EqualFrequencyCut)
    ->ArgNames({"cases", "bins"})
    ->ArgsProduct({{10000, 100000, 1000000}, {20, 1000}})
    ->Unit(benchmark::kMillisecond);

void BM_EqualFrequencyCutPlain(benchmark::State& state) {
  const bench::Column classes = bench::Classes(static_cast<std::size_t>(state.range(0)), 2, 1);
  const reference::Cases cases =
      reference::ValidCases(bench::Normals(classes, bench::kHalfSeparated, 2), classes, {});
  for (auto _ : state) {
    std::vector<double> cutPoints;
    benchmark::DoNotOptimize(reference::PercentileCutPoints(cases.sorted,
                                                            static_cast<int>(state.range(1)), true,
                                                            cases.totalWeight, cutPoints, nullptr));
  }
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_EqualFrequencyCutPlain)
    ->ArgNames({"cases", "bins"})
    ->ArgsProduct({{10000, 100000, 1000000}, {20, 1000}})
    ->Unit(benchmark::kMillisecond);

template <typename Run>
void MeasureRun(benchmark::State& state, const Run& run) {
  const bench::Columns columns = Data(state);
  const TempDir directory;
  for (auto _ : state) {
    const bench::CutPoints cutPoints = run(columns, directory.Path());
    benchmark::DoNotOptimize(cutPoints.data());
  }
  bench::ReportItems(state, state.range(0) * state.range(1));
}

void SetArguments(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"cases", "attributes"})
      ->ArgsProduct({{10000, 100000}, {10}})
      ->Args({1000000, 2})
      ->Unit(benchmark::kMillisecond);
}

void BM_SupervisedRun(benchmark::State& state) {
  MeasureRun(state, [](const bench::Columns& columns, const std::string& directory) {
    return bench::RunSupervised(columns, directory, kEveryValue);
  });
}
BENCHMARK(BM_SupervisedRun)->Apply(SetArguments)->Args({1000000, 10});

void BM_SupervisedRunPlain(benchmark::State& state) {
  MeasureRun(state, [](const bench::Columns& columns, const std::string&) {
    return bench::RunPlainSupervised(columns, kEveryValue);
  });
}
BENCHMARK(BM_SupervisedRunPlain)->Apply(SetArguments);

void BM_PreBinnedRun(benchmark::State& state) {
  MeasureRun(state, [](const bench::Columns& columns, const std::string& directory) {
    return bench::RunSupervised(columns, directory, kPreBinned);
  });
}
BENCHMARK(BM_PreBinnedRun)->Apply(SetArguments)->Args({1000000, 10});

void BM_PreBinnedRunPlain(benchmark::State& state) {
  MeasureRun(state, [](const bench::Columns& columns, const std::string&) {
    return bench::RunPlainSupervised(columns, kPreBinned);
  });
}
BENCHMARK(BM_PreBinnedRunPlain)->Apply(SetArguments);

void BM_EqualFrequencyRun(benchmark::State& state) {
  MeasureRun(state, [](const bench::Columns& columns, const std::string& directory) {
    return bench::RunEqualFrequency(columns, directory, {-1, 20});
  });
}
BENCHMARK(BM_EqualFrequencyRun)->Apply(SetArguments)->Args({1000000, 10});

void BM_EqualFrequencyRunPlain(benchmark::State& state) {
  MeasureRun(state, [](const bench::Columns& columns, const std::string&) {
    return bench::RunPlainEqualFrequency(columns, 20);
  });
}
BENCHMARK(BM_EqualFrequencyRunPlain)->Apply(SetArguments);

}  // namespace
