#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

namespace bench {

// Makes the report tell how many items (cases, rows, values) are done per second.
inline void ReportItems(benchmark::State& state, std::int64_t itemsPerIteration) {
  state.SetItemsProcessed(state.iterations() * itemsPerIteration);
}

}  // namespace bench
