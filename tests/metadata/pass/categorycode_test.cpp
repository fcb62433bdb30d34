// Codes some at a time against codes one by one.

#include "metadata/pass/categorycode.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <vector>

#include "metadata/pass/casecollector.h"

namespace {

const double kValues[] = {0.0,
                          -0.0,
                          DBL_TRUE_MIN,
                          0.5,
                          1.0,
                          2.9,
                          254.0,
                          std::nextafter(255.0, 0.0),
                          255.0,
                          255.9,
                          std::nextafter(256.0, 0.0),
                          256.0,
                          1e300,
                          -1.0,
                          -DBL_TRUE_MIN,
                          HUGE_VAL,
                          -HUGE_VAL,
                          std::nan(""),
                          -std::nan("")};

TEST(CategoryCodes, AreFromZeroToAnEnd) {
  for (const double end : {1.0, 2.0, 255.0, 256.0}) {
    for (const double value : kValues) {
      const std::vector<double> among{0.0, value, 0.0};
      const bool isBetween = !std::signbit(value) && value < end;
      EXPECT_EQ(
          MCBinning::AreFromZeroTo(end, among.size(), [&](std::size_t i) { return among[i]; }),
          isBetween)
          << value << " below " << end;
    }
  }
}

TEST(CategoryCodes, AreTheSameTargetsInABlock) {
  for (const double missing : {-DBL_MAX, 0.0, 1.0, 2.9, 256.0, std::nan("")}) {
    for (const double value : kValues) {
      const std::vector<double> block{1.0, value, 0.0, 255.0};
      std::vector<std::uint16_t> targets(block.size()), expected;
      for (const double code : block) expected.push_back(MCBinning::ToTarget(code, missing));
      MCBinning::ToTargets(block.data(), block.size(), missing, targets.data());
      EXPECT_EQ(targets, expected) << value << ", missing " << missing;
    }
  }
}

}  // namespace
