#pragma once

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// What a split that was not accepted means, by its gain as a share of what it had to exceed:
// "close", "weak" or "nothing to find". docs/method.md, "What came closest", has the shares.
inline const char* DescribeBestSplit(const BestSplit& split) {
  constexpr double kClose = 0.8;
  constexpr double kWeak = 0.5;
  if (split.gain >= kClose * split.threshold && split.gain > 0.0) return "close";
  return split.gain >= kWeak * split.threshold && split.gain > 0.0 ? "weak" : "nothing to find";
}

}  // namespace MCBinModel
