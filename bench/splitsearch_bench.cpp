// Bin tables, and the search for the best split of all their rows.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "columns.h"
#include "itemrate.h"
#include "librarycalls.h"
#include "plainform.h"
#include "support/tempdir.h"

namespace {

// Arguments: values, classes, how far the classes lie apart in percent of a standard deviation.
bench::PlainTable Table(const benchmark::State& state) {
  const int classCount = static_cast<int>(state.range(1));
  const bench::Column classes =
      bench::Classes(static_cast<std::size_t>(state.range(0)), classCount, 1);
  const double separation = static_cast<double>(state.range(2)) / 100.0;
  return bench::MakeTable(bench::Normals(classes, separation, 2), classes, classCount);
}

template <typename Search>
void MeasureSearch(benchmark::State& state, const Search& search) {
  const bench::PlainTable table = Table(state);
  std::vector<double> left(table.totals.size());
  std::vector<double> right = table.totals;
  for (auto _ : state) {
    std::fill(left.begin(), left.end(), 0.0);
    std::copy(table.totals.begin(), table.totals.end(), right.begin());
    benchmark::DoNotOptimize(search(table, left, right));
  }
  bench::ReportItems(state, table.GetRowCount());
}

void SetArguments(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"values", "classes", "separation"})
      ->ArgsProduct({{10000, 100000, 1000000}, {2, 5}, {50, 0}})
      ->Unit(benchmark::kMillisecond);
}

void BM_SplitSearch(benchmark::State& state) {
  const bench::Splitter splitter(static_cast<int>(state.range(1)));
  MeasureSearch(state, [&](const bench::PlainTable& table, auto& left, auto& right) {
    return splitter.FindBest(table.weights, left, right);
  });
}
BENCHMARK(BM_SplitSearch)->Apply(SetArguments);

void BM_SplitSearchPlain(benchmark::State& state) {
  MeasureSearch(state, [](const bench::PlainTable& table, auto& left, auto& right) {
    return reference::BestSplit(table.weights, 0, table.GetRowCount() - 1, true, left, right);
  });
}
BENCHMARK(BM_SplitSearchPlain)->Apply(SetArguments);

// Floor of the plain scan: one logarithm a row, where it needs two for each class.
void BM_SplitSearchFloorLog(benchmark::State& state) {
  std::vector<double> shares(static_cast<std::size_t>(state.range(0)));
  for (std::size_t i = 0; i < shares.size(); ++i) {
    shares[i] = static_cast<double>(i + 1) / static_cast<double>(shares.size());
  }
  for (auto _ : state) {
    double sum = 0.0;
    for (const double share : shares) sum += std::log(share);
    benchmark::DoNotOptimize(sum);
  }
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_SplitSearchFloorLog)
    ->ArgName("values")
    ->RangeMultiplier(10)
    ->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond);

void BM_BinTable(benchmark::State& state) {
  const auto caseCount = static_cast<std::size_t>(state.range(0));
  const bench::Columns columns = bench::MixedColumns(caseCount, 1, 2);
  const bench::PlainTable plain =
      bench::MakeTable(columns.attributes[0], columns.target, columns.classCount);
  const TempDir directory;
  bench::DataPass pass(columns, directory.Path());
  pass.Run();
  pass.LoadAttribute(0);
  std::vector<double> table;
  for (auto _ : state) {
    pass.CreateBinTable(plain.boundaries, table);
    benchmark::DoNotOptimize(table.data());
  }
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_BinTable)
    ->ArgName("cases")
    ->RangeMultiplier(10)
    ->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond);

void BM_BinTablePlain(benchmark::State& state) {
  const auto caseCount = static_cast<std::size_t>(state.range(0));
  const bench::Columns columns = bench::MixedColumns(caseCount, 1, 2);
  const bench::PlainTable plain =
      bench::MakeTable(columns.attributes[0], columns.target, columns.classCount);
  const reference::Cases cases = reference::ValidCases(columns.attributes[0], columns.target, {});
  std::vector<double> table;
  for (auto _ : state) {
    benchmark::DoNotOptimize(reference::BinTable(cases.sorted, plain.boundaries, 2, true, table));
  }
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_BinTablePlain)
    ->ArgName("cases")
    ->RangeMultiplier(10)
    ->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
