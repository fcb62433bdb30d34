// What the machine itself needs for files and for text: the numbers that whole runs stand on.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "columns.h"
#include "floors.h"
#include "itemrate.h"
#include "support/tempdir.h"

namespace {

constexpr std::int64_t kCaseCount = 1000000;
constexpr std::int64_t kValueBytes = sizeof(double);

void BM_FloorWriteFile(benchmark::State& state) {
  const bench::Column column(static_cast<std::size_t>(kCaseCount), 1.0);
  const TempDir directory;
  for (auto _ : state) {
    const auto files = bench::WriteColumnFiles({&column}, directory.Path());
    state.PauseTiming();
    bench::RemoveColumnFiles(files);
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * kValueBytes * kCaseCount);
}
BENCHMARK(BM_FloorWriteFile)->Unit(benchmark::kMillisecond);

void BM_FloorReadFile(benchmark::State& state) {
  const bench::Column column(static_cast<std::size_t>(kCaseCount), 1.0);
  const TempDir directory;
  const auto files = bench::WriteColumnFiles({&column}, directory.Path());
  for (auto _ : state) bench::ReadColumnFiles(files);
  state.SetBytesProcessed(state.iterations() * kValueBytes * kCaseCount);
}
BENCHMARK(BM_FloorReadFile)->Unit(benchmark::kMillisecond);

// Every field of a file with 11 columns.
void BM_FloorConvertCsv(benchmark::State& state) {
  const auto caseCount = static_cast<std::size_t>(state.range(0));
  const TempDir directory;
  const std::string file = directory.Path() + "/floor.csv";
  bench::WriteCsv(bench::MixedColumns(caseCount, 10, 2), file);
  for (auto _ : state) benchmark::DoNotOptimize(bench::ConvertCsv(file));
  bench::ReportItems(state, state.range(0) * 11);
}
BENCHMARK(BM_FloorConvertCsv)
    ->ArgName("rows")
    ->RangeMultiplier(10)
    ->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
