#include "common/vectormath.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Doubles = std::vector<double>;

TEST(VectorMath, FollowsTheFormulas) {
  EXPECT_EQ(MCBinning::VectorDiffNorm({1, 2, -3}, {4, -2, -3}), 5);
  EXPECT_EQ(MCBinning::VectorDotProduct({1, 2, -3}, {4, -2, 1}), -3);
  EXPECT_EQ(MCBinning::VectorDotProduct({1e16, 1, -1e16}, {1, 1, 1}), 0) << "first to last";
  EXPECT_EQ(MCBinning::VectorMaxX({-3, -1, -2}), -1);
  EXPECT_EQ(MCBinning::VectorMaxX({}), -HUGE_VAL);
  EXPECT_EQ(MCBinning::VectorXNonZero({5, 0, -0.0, std::nan(""), -1}), 3u);
  EXPECT_EQ(MCBinning::VectorXNonZero({5, 0, -0.0, std::nan(""), -1}, 1), 2u);
  Doubles copy{7, 7, 7};
  MCBinning::VectorCopy({1, 2}, copy);
  EXPECT_EQ(copy, (Doubles{1, 2}));
}

}  // namespace
