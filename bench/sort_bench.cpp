// Sorting the cases of an attribute by value.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "columns.h"
#include "floors.h"
#include "itemrate.h"
#include "librarycalls.h"
#include "tuples.h"

namespace {

enum Order { kRandom = 0, kTied = 1, kSorted = 2 };

std::vector<BINDataTuple> Tuples(const benchmark::State& state) {
  const bench::Column classes = bench::Classes(static_cast<std::size_t>(state.range(0)), 2, 1);
  bench::Column values = bench::Normals(classes, bench::kHalfSeparated, 2);
  if (state.range(1) == kTied) values = bench::Rounded(values, 0.01);
  if (state.range(1) == kSorted) values = bench::Sorted(values);
  return bench::MakeTuples(values, classes);
}

// Times `sort` alone, not the copy that gives it unsorted cases again.
template <typename Sort>
void MeasureSort(benchmark::State& state, const Sort& sort) {
  const std::vector<BINDataTuple> unsorted = Tuples(state);
  std::vector<BINDataTuple> tuples = unsorted;
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(unsorted.begin(), unsorted.end(), tuples.begin());
    state.ResumeTiming();
    sort(tuples);
    benchmark::DoNotOptimize(tuples.data());
  }
  bench::ReportItems(state, state.range(0));
}

void SetArguments(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"cases", "random0_tied1_sorted2"})
      ->ArgsProduct({{10000, 100000, 1000000}, {kRandom, kTied, kSorted}})
      ->Unit(benchmark::kMillisecond);
}

void BM_Sort(benchmark::State& state) {
  bench::Sorter sorter;
  MeasureSort(state, [&](std::vector<BINDataTuple>& tuples) { sorter.Sort(tuples); });
}
BENCHMARK(BM_Sort)->Apply(SetArguments);

void BM_SortPlain(benchmark::State& state) {
  MeasureSort(state, [](std::vector<BINDataTuple>& tuples) {
    std::stable_sort(tuples.begin(), tuples.end());
  });
}
BENCHMARK(BM_SortPlain)->Apply(SetArguments);

void BM_SortFloorRadix(benchmark::State& state) {
  std::vector<BINDataTuple> scratch(static_cast<std::size_t>(state.range(0)));
  MeasureSort(state, [&](std::vector<BINDataTuple>& tuples) { bench::RadixSort(tuples, scratch); });
}
BENCHMARK(BM_SortFloorRadix)->Apply(SetArguments);

// Floor for input that is sorted already.
void BM_SortFloorReadOnce(benchmark::State& state) {
  const std::vector<BINDataTuple> tuples = Tuples(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(bench::ReadOnce(tuples.data(), tuples.size() * sizeof(BINDataTuple)));
  }
  bench::ReportItems(state, state.range(0));
}
BENCHMARK(BM_SortFloorReadOnce)
    ->ArgNames({"cases", "random0_tied1_sorted2"})
    ->ArgsProduct({{10000, 100000, 1000000}, {kSorted}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
