#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "binmodel/refine/intervaltable.h"

namespace MCBinModel {

// More are not joined: time and memory grow with the square of the bins.
constexpr std::size_t kMostBinsToJoin = 2000;

// Neighbours joined: where each joined bin ends, ascending, and the sum of their values.
struct Joining {
  std::vector<std::size_t> ends;
  std::int64_t value = 0;
};

// The joining that is worth most of all that the limits allow; of equally good ones that of fewer
// bins, then the one whose first cut that differs is lower. Nothing when the limits allow none. An
// exact dynamic programme, docs/method.md. Requires limits that `table` was made with.
std::optional<Joining> FindBestJoining(const IntervalTable& table, const JoinLimits& limits);

}  // namespace MCBinModel
