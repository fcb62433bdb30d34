#include "algorithm/nearlog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "support/scenario.h"

namespace {

constexpr double kError = 2e-13;

// Around the borders of the parts it is worst.
TEST(NearLog, IsAsNearAsItSays) {
  std::mt19937_64 random(TestSeed());
  for (int exponent = 0; exponent < 53; ++exponent) {
    for (int part = 0; part <= 128; ++part) {
      const double border = std::ldexp(1.0 + part / 128.0, exponent);
      const double between =
          std::ldexp(1.0 + static_cast<double>(random() >> 12) * 0x1p-52, exponent);
      for (const double x : {std::nextafter(border, 0.0), border, between}) {
        ASSERT_NEAR(MCBinning::NearLog(x), std::log(x), kError) << x << ", seed " << TestSeed();
      }
    }
  }
  EXPECT_EQ(MCBinning::NearXLogX(0.0), 0.0);
}

}  // namespace
