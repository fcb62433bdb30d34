#include "metadata/bincatnumencoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "common/missing.h"
#include "metadata/binnumericusermissing.h"

namespace {

TEST(BINCatNumEncoder, GivesNoCodeToMissingValues) {
  const double nan = std::nan("");
  BINCatNumEncoder encoder({nan, 5, MCMV::Missing(), 3, -nan, 5});
  auto userMissing = std::make_unique<BINNumericUserMissing>();
  userMissing->AddValue(9, "missing");
  ASSERT_TRUE(encoder.SetUserMissingInfo(userMissing.release()));
  for (const double missing : {MCMV::Missing(), nan, -nan, 9.0}) {
    EXPECT_EQ(encoder.Encode(missing), -1.0) << missing;
    EXPECT_EQ(encoder.EncodeConst(missing), -1.0) << missing;
  }
  EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
  EXPECT_EQ(encoder.Encode(3), 1.0) << "no code went to a missing value";
}

TEST(BINCatNumEncoder, ZerosOfBothSignsAreOneCategory) {
  const BINCatNumEncoder encoder({-0.0, 0.0});
  EXPECT_EQ(encoder.GetNumberOfCategories(), 1);
  EXPECT_TRUE(std::signbit(encoder.Decode(0))) << "the one seen first";
}

}  // namespace
