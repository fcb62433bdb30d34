// Joining bins to the best ones of a kind: pre-bins of two classes to at most 20.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>

#include "binmodel/refine/binrefine.h"

namespace {

using MCBinModel::RateTrend;

// Bins of 1,000 cases; the share of the event rises from about 10 to 50 % or, with a wave, goes up
// and down on its way.
MCBinModel::BinModel Prebins(std::int64_t binCount, bool hasWave) {
  constexpr double kBinWeight = 1000.0;
  MCBinModel::BinModel model;
  model.attributes.emplace_back().name = "attribute";
  model.targets.emplace_back().name = "target";
  model.targets[0].kind = MCBinModel::VariableKind::kNumericCategorical;
  model.targets[0].numbers = {0.0, 1.0};
  MCBinModel::AttributeBins bins;
  bins.target = 0;
  std::mt19937_64 random(1);
  for (std::int64_t bin = 0; bin < binCount; ++bin) {
    const double place = static_cast<double>(bin) / static_cast<double>(binCount);
    const double share = 0.1 + 0.4 * place + (hasWave ? 0.05 * std::sin(40.0 * place) : 0.0);
    const double events = std::binomial_distribution<int>(1000, share)(random);
    if (bin > 0) bins.cutPoints.push_back(static_cast<double>(bin));
    bins.binWeights.push_back(kBinWeight);
    bins.classWeights.push_back({kBinWeight - events, events});
  }
  model.results.push_back(bins);
  return model;
}

void Measure(benchmark::State& state, RateTrend trend, double minRateDifference) {
  const MCBinModel::BinModel model = Prebins(state.range(0), state.range(1) != 0);
  MCBinModel::RefineSettings settings;
  settings.maxBins = 20;
  settings.trend = trend;
  settings.minRateDifference = minRateDifference;
  for (auto _ : state) {
    benchmark::DoNotOptimize(MCBinModel::RefineBins(model, 0, settings));
  }
}

void SetArguments(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"bins", "wave"})
      ->ArgsProduct({{100, 1000}, {0, 1}})
      ->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(Measure, Number, RateTrend::kAny, 0.0)->Name("BM_Refine")->Apply(SetArguments);
BENCHMARK_CAPTURE(Measure, Increasing, RateTrend::kIncreasing, 0.0)
    ->Name("BM_RefineIncreasing")
    ->Apply(SetArguments);
BENCHMARK_CAPTURE(Measure, Either, RateTrend::kEither, 0.0)
    ->Name("BM_RefineEither")
    ->Apply(SetArguments);
BENCHMARK_CAPTURE(Measure, Peak, RateTrend::kPeak, 0.0)->Name("BM_RefinePeak")->Apply(SetArguments);
BENCHMARK_CAPTURE(Measure, Difference, RateTrend::kAny, 0.01)
    ->Name("BM_RefineDifference")
    ->Apply(SetArguments);

}  // namespace
