// The one pass over the host's records, and the load of an attribute from the temporary files.

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "columns.h"
#include "floors.h"
#include "itemrate.h"
#include "librarycalls.h"
#include "support/tempdir.h"

namespace {

bench::Columns WeightedColumn(const benchmark::State& state) {
  bench::Columns columns = bench::MixedColumns(static_cast<std::size_t>(state.range(0)), 1, 2);
  columns.weights.assign(columns.GetCaseCount(), 2.0);
  return columns;
}

bench::Columns ManyColumns(const benchmark::State& state) {
  return bench::MixedColumns(static_cast<std::size_t>(state.range(0)),
                             static_cast<int>(state.range(1)), 2);
}

void BM_DataPass(benchmark::State& state) {
  const bench::Columns columns = ManyColumns(state);
  const TempDir directory;
  for (auto _ : state) {
    bench::DataPass pass(columns, directory.Path());
    pass.Run();
  }
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_DataPass)
    ->ArgNames({"cases", "attributes"})
    ->ArgsProduct({{10000, 100000, 1000000}, {10}})
    ->Unit(benchmark::kMillisecond);

// Floor of the data pass: the same bytes written from columns as they are.
void BM_DataPassFloorWrite(benchmark::State& state) {
  const bench::Columns columns = ManyColumns(state);
  std::vector<const bench::Column*> files{&columns.target};
  for (const bench::Column& attribute : columns.attributes) files.push_back(&attribute);
  const TempDir directory;
  for (auto _ : state) {
    bench::RemoveColumnFiles(bench::WriteColumnFiles(files, directory.Path()));
  }
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_DataPassFloorWrite)
    ->ArgNames({"cases", "attributes"})
    ->ArgsProduct({{10000, 100000, 1000000}, {10}})
    ->Unit(benchmark::kMillisecond);

// Target, weight and attribute into unsorted tuples.
void BM_AttributeRead(benchmark::State& state) {
  const bench::Columns columns = WeightedColumn(state);
  const TempDir directory;
  bench::DataPass pass(columns, directory.Path());
  pass.Run();
  for (auto _ : state) pass.ReadAttribute(0);
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_AttributeRead)
    ->ArgName("cases")
    ->RangeMultiplier(10)
    ->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond);

// The same, sorted and with its totals.
void BM_AttributeLoad(benchmark::State& state) {
  const bench::Columns columns = WeightedColumn(state);
  const TempDir directory;
  bench::DataPass pass(columns, directory.Path());
  pass.Run();
  for (auto _ : state) benchmark::DoNotOptimize(pass.LoadAttribute(0).data());
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_AttributeLoad)
    ->ArgName("cases")
    ->RangeMultiplier(10)
    ->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond);

// Floor of the attribute load: the bytes of its three files copied in memory.
void BM_AttributeReadFloorMemcpy(benchmark::State& state) {
  const auto valueCount = 3 * static_cast<std::size_t>(state.range(0));
  const std::vector<double> from(valueCount, 1.0);
  std::vector<double> to(valueCount, 2.0);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), valueCount * sizeof(double));
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_AttributeReadFloorMemcpy)
    ->ArgName("cases")
    ->RangeMultiplier(10)
    ->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
