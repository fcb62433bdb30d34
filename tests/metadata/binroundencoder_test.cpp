#include "metadata/binroundencoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "common/missing.h"
#include "metadata/binnumericusermissing.h"
#include "support/hostusermissing.h"
#include "support/rowname.h"

namespace {

constexpr double kLowest = std::numeric_limits<double>::lowest();  // the system-missing value
constexpr auto kNeither = static_cast<IBINVariable::BINWRoundingOption>(7);

struct WeightExample {
  const char* name;
  double weight;
  double truncated;
  double rounded;
  double unchanged;
};

void PrintTo(const WeightExample& example, std::ostream* os) { *os << example.name; }

class RoundEncoderTest : public testing::TestWithParam<WeightExample> {};

TEST_P(RoundEncoderTest, MakesWholePositiveWeights) {
  const auto& [name, weight, truncated, rounded, unchanged] = GetParam();
  EXPECT_EQ(BINRoundEncoder(IBINVariable::RoundTruncate).Encode(weight), truncated);
  EXPECT_EQ(BINRoundEncoder().Encode(weight), rounded);
  EXPECT_EQ(BINRoundEncoder(kNeither).Encode(weight), unchanged);
}

using Row = WeightExample;
INSTANTIATE_TEST_SUITE_P(Examples, RoundEncoderTest,
                         testing::Values(Row{"Above", 2.9, 2, 3, 2.9},
                                         Row{"HalfGoesUp", 2.5, 2, 3, 2.5},
                                         Row{"SmallestKept", 0.5, kLowest, 1, 0.5},
                                         Row{"TooSmall", 0.49, kLowest, kLowest, 0.49},
                                         Row{"Zero", 0, kLowest, kLowest, kLowest},
                                         Row{"Negative", -3.2, kLowest, kLowest, kLowest},
                                         Row{"Missing", kLowest, kLowest, kLowest, kLowest},
                                         Row{"Huge", 1e300, 1e300, 1e300, 1e300}),
                         RowName);

TEST(BINRoundEncoder, GivesNaNBack) {
  EXPECT_TRUE(std::isnan(BINRoundEncoder().Encode(std::nan(""))));
}

TEST(BINRoundEncoder, AsksForMissingBeforeRounding) {
  BINNumericUserMissing userMissing;
  BINRoundEncoder encoder;
  ASSERT_TRUE(encoder.SetUserMissingInfo(&userMissing));
  userMissing.AddValue(3, "");
  EXPECT_EQ(encoder.Encode(3.0), MCMV::Missing());
  EXPECT_EQ(encoder.Encode(2.9), 3.0);
  encoder.SetUserMissingInfo(nullptr);
  EXPECT_EQ(encoder.Encode(3.0), 3.0);
}

TEST(BINRoundEncoder, RefusesStringsAndPassesOverAHostsClass) {
  HostUserMissing string(IBINUserMissing::UserMissingString);
  HostUserMissing numeric(IBINUserMissing::UserMissingNumeric);
  BINRoundEncoder encoder;
  EXPECT_TRUE(encoder.SetUserMissingInfo(&numeric));
  EXPECT_FALSE(encoder.SetUserMissingInfo(&string));
  EXPECT_EQ(encoder.GetUserMissingInfo(), &numeric);
  EXPECT_EQ(encoder.Encode(3.0), 3.0);
}

}  // namespace
